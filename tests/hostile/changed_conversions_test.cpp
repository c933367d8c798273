// Exports, copies and conversions whose host calls change the very container, every time or at the
// worst moment.
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "lies.h"
#include "runtime/arrays.h"
#include "runtime/classes.h"
#include "runtime/dictionary.h"
#include "runtime/services.h"
#include "runtime/strings.h"
#include "runtime/variants.h"
#include "support/host_arrays.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using standin::ArrayRef;
using standin::Faults;
using standin::ObjectRef;
using support::Container;

constexpr const char* array_maker = "RuntimeArrayCreateSingleDimBoundedArray";
constexpr const char* dictionary_setter = "Value(key As Variant, Assigns _value As Variant)";

ObjectRef variant_of(const support::Element& element) {
  if (const auto* number = std::get_if<std::int32_t>(&element))
    return standin::variant_from_integer(*number);
  if (const auto* string = std::get_if<standin::StringRef>(&element))
    return standin::variant_from_string(string->get());
  return std::get<ObjectRef>(element);
}

std::string text_of(const ObjectRef& variant) {
  return standin::utf8(standin::to_string(variant.get()).get());
}

class ChangedInsideAConversion : public support::ClassTest {
 protected:
  static ArrayRef keys_of(const Container& container) {
    return ArrayRef::adopt(container.call<REALarray>("Keys as {K}()"));
  }

  /// Runs the destructor, as a host does whose counting of references is wrong.
  void destroy(const Container& container) {
    void* const destructor = host().find_class(container_class().name)->destructor();
    reinterpret_cast<void (*)(REALobject)>(destructor)(container.get());
  }

  /// When the second element is written into a host array.
  void at_second_write(const std::function<void()>& change) {
    host().faults().call_at(
        Faults::any_entry_point, 1,
        [this, change] {
          const std::string_view called = host().faults().last_fired();
          if (called.starts_with("array set") && ++writes_ == 2) change();
        },
        Faults::Repeat::from_there_on);
  }

  void expect_empty_export(const Container& container) {
    const ArrayRef keys = keys_of(container);
    host().faults().clear();
    ASSERT_TRUE(keys);
    EXPECT_EQ(standin::upper_bound(keys.get()), -1);
    expect_whole(container, 0);
  }

  void expect_whole(const Container& container, std::int32_t count) {
    EXPECT_EQ(container.count(), count);
    EXPECT_EQ(container.keys().size(), static_cast<std::size_t>(count));
    EXPECT_EQ(raised(), "");
  }

 private:
  int writes_ = 0;
};
class SetChangedInsideAConversion : public ChangedInsideAConversion {};
class MapChangedInsideAConversion : public ChangedInsideAConversion {};
class MapChangedAsItIsCopied : public ChangedInsideAConversion {
 protected:
  struct HostCall {
    const char* service;
    std::uint64_t number;
  };
  /// Calls of the host with which a copy of four entries reads and locks them.
  std::vector<HostCall> calls_for_entries() const {
    using support::ElementType;
    const support::ContainerClass& c = container_class();
    std::vector<HostCall> calls;
    const auto add = [&](const char* service, std::uint64_t first, std::uint64_t count) {
      for (std::uint64_t n = first; n < first + count; ++n) calls.push_back({service, n});
    };
    const bool is_text_table = c.is_hashed() && c.key == ElementType::string;
    if (is_text_table) add("PluginGetStringData", 1, 4);
    const bool locks_twice =
        is_text_table ? c.value == ElementType::string : c.key != ElementType::integer;
    const std::uint64_t count = locks_twice ? 8 : 4;
    if (c.key == ElementType::string || c.value == ElementType::string) {
      add("REALLockString", 1, count);
    } else {
      add("REALLockObject", 3, count);  // before, both maps are locked
    }
    return calls;
  }
};
ZRB_FOR_CLASSES(ChangedInsideAConversion, support::all_classes());
ZRB_FOR_CLASSES(SetChangedInsideAConversion, support::set_classes());
ZRB_FOR_CLASSES(MapChangedInsideAConversion, support::map_classes());
ZRB_FOR_CLASSES(MapChangedAsItIsCopied,
                support::classes_where([](const support::ContainerClass& c) {
                  return c.is_map() && c.value != support::ElementType::integer;
                }));

TEST_P(ChangedInsideAConversion, an_export_is_given_up_when_each_array_made_adds_a_key) {
  const Container container = make_with(3);
  int next = 3;
  host().faults().call_at(
      array_maker, 1, [&] { container.put(next++); }, Faults::Repeat::from_there_on);
  EXPECT_FALSE(keys_of(container));
  host().faults().clear();
  EXPECT_GT(next, 10) << "it is begun again some times";
  expect_whole(container, next);
  EXPECT_EQ(standin::upper_bound(keys_of(container).get()), next - 1);
}

TEST_P(ChangedInsideAConversion, an_export_asks_once_for_an_array_that_is_refused) {
  const Container container = make_with(3);
  host().faults().answer_null_at(array_maker, 1, Faults::Repeat::from_there_on);
  host().calls().reset();
  EXPECT_FALSE(keys_of(container));
  EXPECT_EQ(host().calls().of(array_maker), 1U);
  host().faults().clear();
  expect_whole(container, 3);
}

TEST_P(ChangedInsideAConversion, an_export_inside_an_export_makes_the_arrays_for_both) {
  const Container container = make_with(3);
  ArrayRef inner;
  host().faults().call_at(array_maker, 1, [&] { inner = keys_of(container); });
  const ArrayRef outer = keys_of(container);
  EXPECT_EQ(outer.get(), inner.get());
  EXPECT_EQ(support::described(container_class().key, outer.get()), container.described_keys());
}

TEST_P(ChangedInsideAConversion, an_export_is_that_of_the_storage_that_came_meanwhile) {
  const Container container = make_with(3);
  at_second_write([&] { container.construct(); });
  expect_empty_export(container);
}

TEST_P(ChangedInsideAConversion, an_export_has_nothing_of_what_was_cleared_meanwhile) {
  const Container container = make_with(3);
  at_second_write([&] { container.call<void>("Clear"); });
  expect_empty_export(container);
}

TEST_P(ChangedInsideAConversion, an_export_has_no_key_that_was_removed_meanwhile) {
  const Container container = make_with(3);
  at_second_write([&] { container.remove(key(1)); });
  const ArrayRef keys = keys_of(container);
  host().faults().clear();
  ASSERT_TRUE(keys);
  EXPECT_EQ(support::described(container_class().key, keys.get()), container.described_keys());
  expect_whole(container, 2);
}

TEST_P(ChangedInsideAConversion, an_export_ends_without_an_array_when_the_storage_is_destroyed) {
  const Container container = make_with(3);
  host().faults().call_at(array_maker, 1, [&] { destroy(container); });
  EXPECT_FALSE(keys_of(container));
  EXPECT_EQ(container.first_word(), nullptr);
}

TEST_P(SetChangedInsideAConversion, an_array_is_read_no_further_when_the_storage_is_destroyed) {
  const ArrayRef array = support::host_array(container_class().key, {key(1), key(2), key(3)});
  const Container set = Container::without_storage(container_class());
  int reads = 0;
  host().faults().call_at(
      Faults::any_entry_point, 1,
      [&] {
        if (std::string_view(host().faults().last_fired()).substr(0, 9) != "array get") return;
        if (++reads == 2) destroy(set);
      },
      Faults::Repeat::from_there_on);
  set.call<void>("Constructor(Keys() as {K})", array.get());
  host().faults().clear();
  EXPECT_EQ(reads, 2);
  EXPECT_EQ(set.first_word(), nullptr);
}

TEST_P(MapChangedInsideAConversion,
       nothing_is_copied_when_the_former_content_destroys_the_storage) {
  const Container other = make_with(3);
  const Container map = make_with(0);
  const ArrayRef keys = keys_of(map);  // given up by the copy
  host().faults().call_at("REALUnlockObject", 1, [&] { destroy(map); });
  map.call<void>("Constructor(other as {Class})", other.get());
  host().faults().clear();
  EXPECT_EQ(map.first_word(), nullptr);
  expect_whole(other, 3);
}

// Giving up the arrays runs code that finds the fresh storage already.
TEST_P(MapChangedInsideAConversion, a_copy_goes_into_what_was_added_as_the_cached_arrays_went) {
  for (const auto& [count, stays] : {std::pair(4, true), std::pair(4, false), std::pair(0, true)}) {
    const Container map = make_with(0);
    keys_of(map);
    const Container other = make_with(count);
    host().faults().call_at("REALUnlockObject", 1, [&, stays = stays] {
      map.put(7);
      if (!stays) map.remove(key(7));
    });
    map.call<void>("Constructor(other as {Class})", other.get());
    host().faults().clear();
    expect_whole(map, stays ? count + 1 : count);
    const Container expected = make_with(0);
    if (stays) expected.put(7);
    for (const support::Element& copied : other.keys()) expected.put(copied, value(1));
    EXPECT_EQ(map.described_keys(), expected.described_keys());
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(support::describe(map.value(key(i))), support::describe(value(i)));
    }
    expect_whole(other, count);
  }
}

// The entries of a copy are added one after the other, so the host can add another one between
// them.
TEST_P(MapChangedAsItIsCopied, a_copy_keeps_what_was_added_while_it_was_made) {
  const Container other = make_with(4);
  for (const auto& [service, number] : calls_for_entries()) {
    SCOPED_TRACE(service + std::to_string(number));
    const Container map = make_with(0);
    host().faults().call_at(service, number, [&] { map.put(7); });
    map.call<void>("Constructor(other as {Class})", other.get());
    host().faults().clear();
    expect_whole(map, 5);
    expect_whole(other, 4);
  }
}

// All entries have one value, which is locked by nobody else in the end.
TEST_P(MapChangedAsItIsCopied, a_copy_that_is_emptied_while_it_is_made_keeps_no_lock) {
  for (const auto& [service, number] : calls_for_entries()) {
    SCOPED_TRACE(service + std::to_string(number));
    const support::Element held = value(1);
    {
      const Container other = make_with(0);
      for (int i = 0; i < 4; ++i) other.put(key(i), held);
      const Container map = make_with(0);
      host().faults().call_at(service, number, [&] { map.clear(); });
      map.call<void>("Constructor(other as {Class})", other.get());
      host().faults().clear();
      expect_whole(map, map.count());
      EXPECT_LE(map.count(), 4);
    }
    EXPECT_EQ(support::locks(held), 1);
  }
}

// The source owns its entries alone, so they die with their removal, unless the copy that is at one
// of them keeps them.
TEST_P(MapChangedAsItIsCopied, a_copy_reads_nothing_that_its_source_has_given_up) {
  for (const auto& [service, number] : calls_for_entries()) {
    SCOPED_TRACE(service + std::to_string(number));
    const Container other = make_with(4);
    const Container map = make_with(0);
    host().faults().call_at(service, number, [&] { other.clear(); });
    map.call<void>("Constructor(other as {Class})", other.get());
    host().faults().clear();
    expect_whole(other, 0);
    EXPECT_GE(map.count(), 1);
    expect_whole(map, map.count());
  }
}

// What the conversion walks through is the storage that has just been made: there is something in
// it only when giving up the cached arrays runs code that puts it there.
TEST_P(MapChangedInsideAConversion, a_dictionary_gets_what_was_added_as_the_cached_arrays_went) {
  const Container map = make_with(3);
  const ArrayRef keys = keys_of(map);
  host().faults().call_at("REALUnlockObject", 1, [&] { map.put(7); });
  const auto dictionary = ObjectRef::adopt(map.call<REALobject>("CloneDictionary as Dictionary"));
  ASSERT_TRUE(dictionary);
  EXPECT_EQ(standin::dictionary_count(dictionary.get()), 1);
  const ObjectRef found = standin::dictionary_value(dictionary.get(), variant_of(key(7)).get());
  EXPECT_EQ(text_of(found), text_of(variant_of(value(7))));
  expect_whole(map, 1);
}

void* load_no_setter(REALobject object, const char* declaration) {
  if (std::string_view(declaration) == dictionary_setter) return nullptr;
  return standin::services::load_object_method(object, declaration);
}

TEST_P(MapChangedInsideAConversion, a_dictionary_that_takes_no_values_stays_empty) {
  restart(default_options(), [](standin::Host& host) {
    load_with_lies(host, {{"REALLoadObjectMethod", lie(&load_no_setter)}});
  });
  const Container map = make_with(3);
  const ArrayRef keys = keys_of(map);
  host().faults().call_at("REALUnlockObject", 1, [&] { map.put(7); });
  const auto dictionary = ObjectRef::adopt(map.call<REALobject>("CloneDictionary as Dictionary"));
  ASSERT_TRUE(dictionary);
  EXPECT_EQ(standin::dictionary_count(dictionary.get()), 0);
  expect_whole(map, 1);
}

}  // namespace
}  // namespace hostile
