// A resolver that answers null: for everything, for each name that the plugin looks up, and for
// each pair of them, through a load and a short program that touches all eighteen containers.
//
// What holds whatever is missing: keys that are there are found by their own handle and removed,
// counts follow, what a host cannot make is nil, and nothing is raised where nothing can be. A host
// that can unlock and not lock gets its handles locked by the program in advance.
#include <set>

#include "lies.h"
#include "runtime/arrays.h"
#include "runtime/dictionary.h"
#include "runtime/entry_points.h"
#include "runtime/exceptions.h"
#include "runtime/strings.h"
#include "runtime/variants.h"
#include "support/container.h"
#include "support/host_arrays.h"
#include "support/leak_sanitizer.h"

namespace hostile {
namespace {

using standin::ArrayRef;
using standin::ObjectRef;
using support::Container;
using support::ContainerClass;
using support::Element;
using support::Iterator;

using Names = std::set<std::string>;

std::vector<std::string> all_names() {
  std::vector<std::string> names;
  for (const standin::EntryPoint& entry_point : standin::entry_points()) {
    if (entry_point.group != standin::EntryPointGroup::array_procedure) {
      names.emplace_back(entry_point.name);
    }
  }
  return names;
}

/// One host that lacks some names, and the program that it runs.
class Program {
 public:
  explicit Program(Names missing) : missing_(std::move(missing)), host_(options(missing_)) {
    if (!balances_locks()) return;
    host_.ledger().on_violation(
        [](const standin::Violation& violation) { ADD_FAILURE() << violation.text(); });
  }

  void run() {
    if (lacks("PluginRegisterClass")) {
      EXPECT_THROW(host_.load_plugin(ZRB_PLUGIN_PATH), standin::PluginLoadError);
      EXPECT_TRUE(host_.plugin_classes().empty());
      EXPECT_EQ(host_.plugin_main_result(), start_with_resolver(nullptr));
      return;
    }
    host_.load_plugin(ZRB_PLUGIN_PATH);
    ASSERT_EQ(host_.plugin_classes().size(), 36U);
    for (const ContainerClass& c : support::all_classes()) {
      SCOPED_TRACE(c.name);
      run_class(c);
    }
    EXPECT_TRUE(host_.destructor_errors().empty());
  }

 private:
  static standin::HostOptions options(const Names& missing) {
    standin::HostOptions options;
    options.without = missing;
    options.instrument = true;
    options.strict_ledger = true;
    return options;
  }
  bool lacks(const char* name) const { return missing_.contains(name); }
  bool can_make_objects() const { return !lacks("PluginNewInstance"); }
  bool can_raise() const { return can_make_objects() && !lacks("RuntimeRaiseException"); }
  bool balances_locks() const {
    return !lacks("REALLockObject") && !lacks("REALLockString") && !lacks("REALUnlockObject") &&
           !lacks("REALUnlockString");
  }

  std::string raised() {
    if (!host_.has_pending_exception()) return "";
    return standin::HostException(host_.take_pending_exception()).class_name();
  }
  void expect_raised(const char* exception) { EXPECT_EQ(raised(), can_raise() ? exception : ""); }

  /// Holds a handle for good, so that no lack of balance can end it.
  template <class Handle>
  void hold(Handle handle) const {
    if (balances_locks() || handle == nullptr) return;
    for (int i = 0; i < 200; ++i) standin::lock(handle);
  }
  Element held(Element element) const {
    if (const auto* string = std::get_if<standin::StringRef>(&element)) hold(string->get());
    if (const auto* variant = std::get_if<ObjectRef>(&element)) hold(variant->get());
    return element;
  }
  Container held(Container container) const {
    hold(container.get());
    return container;
  }
  /// Takes over a result, unless the plugin could not lock it for the caller.
  template <class Struct>
  standin::Ref<Struct> taken(Struct* handle) const {
    if (lacks("REALLockObject")) hold(handle);
    return standin::Ref<Struct>::adopt(handle);
  }

  void run_class(const ContainerClass& c) {
    without_storage(c);
    const Container container = held(Container::make(c));
    keys_by_their_handles(container);
    iteration(container);
    arrays(container);
    if (c.is_map()) {
      copies(container);
      dictionaries(container);
    }
    container.clear();
    EXPECT_EQ(container.count(), 0);
    EXPECT_TRUE(container.empty());
    static_cast<void>(raised());
  }

  void without_storage(const ContainerClass& c) {
    const Container none = held(Container::without_storage(c));
    EXPECT_EQ(none.count(), 0);
    expect_raised("NilObjectException");
  }

  void keys_by_their_handles(const Container& container) {
    const ContainerClass& c = container.container_class();
    std::vector<Element> keys;
    for (int i = 0; i < 3; ++i) {
      keys.push_back(held(support::key(c, i)));
      container.put(keys.back(), held(support::value(c, i)));
      EXPECT_TRUE(container.contains(keys.back()));
    }
    // Keys that the host cannot tell apart are one.
    const std::int32_t count = container.count();
    if (c.key == support::ElementType::integer) {
      EXPECT_EQ(count, 3);
    } else {
      EXPECT_GE(count, 1);
      EXPECT_LE(count, 3);
    }
    EXPECT_EQ(container.remove(keys[1]), 1);
    EXPECT_FALSE(container.contains(keys[1]));
    EXPECT_EQ(container.count(), count - 1);
    container.put(keys[1], held(support::value(c, 1)));
    EXPECT_EQ(container.count(), count);
    EXPECT_EQ(raised(), "");
  }

  void iteration(const Container& container) {
    const Iterator first = container.first();
    const Iterator last = container.last();
    EXPECT_EQ(static_cast<bool>(first), can_make_objects());
    EXPECT_EQ(static_cast<bool>(last), can_make_objects());
    if (!first || !last) return;
    int steps = 0;
    for (; !first.is_equal(last) && steps < 10; first.move_next()) ++steps;
    EXPECT_EQ(steps, container.count());
  }

  void arrays(const Container& container) {
    const ContainerClass& c = container.container_class();
    const ArrayRef keys = taken(container.call<REALarray>("Keys as {K}()"));
    EXPECT_EQ(static_cast<bool>(keys), !lacks("RuntimeArrayCreateSingleDimBoundedArray"));
    if (keys) {
      hold(keys.get());
      EXPECT_EQ(standin::upper_bound(keys.get()), container.count() - 1);
    }
    if (c.is_set()) return;
    const ArrayRef target = support::host_array(c.key, {});
    hold(target.get());
    container.call<void>("AddKeys(targetArray() as {K})", target.get());
    EXPECT_EQ(standin::upper_bound(target.get()),
              lacks("RuntimeArrayDirectGetInsertProc") ? -1 : container.count() - 1);
    EXPECT_EQ(raised(), "");
  }

  void copies(const Container& map) {
    const ContainerClass& c = map.container_class();
    const ObjectRef clone = ObjectRef::adopt(map.call<REALobject>("Clone as {Class}"));
    EXPECT_EQ(static_cast<bool>(clone), can_make_objects());
    const Container copy = held(Container::without_storage(c));
    copy.call<void>("Constructor(other as {Class})", map.get());
    EXPECT_EQ(copy.count(), map.count());
    copy.call<void>("Constructor(other as {Class})", REALobject{});
    expect_raised("NilObjectException");
  }

  void dictionaries(const Container& map) {
    const ContainerClass& c = map.container_class();
    const ObjectRef dictionary = standin::make_dictionary();
    hold(dictionary.get());
    for (int i = 0; i < 2; ++i) {
      const Element text = support::variant_string("entry " + std::to_string(i));
      const ObjectRef& entry = std::get<ObjectRef>(text);
      hold(entry.get());
      hold(standin::to_string(entry.get()).get());
      standin::dictionary_set(dictionary.get(), entry.get(), entry.get());
    }
    const Container other = held(Container::without_storage(c));
    other.call<void>("Constructor(dic as dictionary)", dictionary.get());
    static_cast<void>(raised());
    EXPECT_GE(other.count(), lacks("REALGetPropValueInt") ? 0 : 1);
    EXPECT_LE(other.count(), 2);
    const ObjectRef made =
        ObjectRef::adopt(other.call<REALobject>("CloneDictionary as Dictionary"));
    EXPECT_EQ(static_cast<bool>(made), can_make_objects());
    EXPECT_TRUE(!made || other.empty());
  }

  Names missing_;
  standin::Host host_;
};

void run_without(const Names& missing) {
  const support::LeaksExpected unbalanced_locks;
  SCOPED_TRACE(::testing::PrintToString(missing));
  Program(missing).run();
}

void* resolve_nothing(const char*) {
  return nullptr;
}

TEST(MissingNames, are_forty_four_in_all) {
  EXPECT_EQ(all_names().size(), 44U);
}

TEST(MissingNames, all_of_them_leave_a_plugin_that_starts_and_registers_nothing) {
  EXPECT_EQ(start_with_resolver(&resolve_nothing), start_with_resolver(nullptr));
  standin::HostOptions options;
  for (const std::string& name : all_names()) options.without.insert(name);
  standin::Host host(options);
  EXPECT_THROW(host.load_plugin(ZRB_PLUGIN_PATH), standin::PluginLoadError);
  EXPECT_TRUE(host.plugin_classes().empty());
  EXPECT_TRUE(host.plugin_versions().empty());
}

TEST(MissingNames, none_leave_everything_working) {
  run_without({});
}

TEST(MissingNames, each_alone_leaves_the_rest_working) {
  for (const std::string& name : all_names()) run_without({name});
}

// Under the sanitizers a library that was loaded stays in memory, so not all pairs have room.
#ifdef ZRB_HAS_ADDRESS_SANITIZER
constexpr std::size_t step = 9;
#else
constexpr std::size_t step = 1;
#endif

TEST(MissingNames, each_pair_leaves_the_rest_working) {
  const std::vector<std::string> names = all_names();
  std::size_t pairs = 0;
  std::size_t runs = 0;
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (std::size_t j = i + 1; j < names.size(); ++j) {
      if (pairs++ % step != 0) continue;
      run_without({names[i], names[j]});
      ++runs;
    }
  }
  EXPECT_EQ(pairs, 946U);
  EXPECT_EQ(runs, (pairs + step - 1) / step);
}

}  // namespace
}  // namespace hostile
