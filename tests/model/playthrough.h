// One container in a host, the model beside it, and the accounts: what the steps of a
// sequence work on.
//
// Steps act on both sides; `expect` compares. The first disagreement ends the sequence.
#ifndef ZRB_TESTS_MODEL_PLAYTHROUGH_H
#define ZRB_TESTS_MODEL_PLAYTHROUGH_H

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/known_array.h"
#include "model/leftovers.h"
#include "model/lock_book.h"
#include "model/model.h"
#include "model/objects.h"
#include "model/performed.h"
#include "runtime/host.h"
#include "support/container.h"

namespace model {

/// Ends a sequence.
struct Disagreed {
  Disagreement disagreement;
};

/// An iterator and the key that it stands at; at the end if none.
struct Slot {
  support::Iterator iterator;
  std::optional<int> key;
};
constexpr int slot_count = 3;

class Playthrough {
 public:
  /// In a host of its own, unless one is given, with the plugin loaded and a strict ledger.
  Playthrough(const Sequence& sequence, const ModelFactory& make_model,
              standin::Host* host = nullptr);
  ~Playthrough();
  Playthrough(const Playthrough&) = delete;
  Playthrough& operator=(const Playthrough&) = delete;

  // What a step speaks of.
  const support::ContainerClass& container_class() const { return class_; }
  const Object& key_of(const Step& step);
  const Object& value_of(const Step& step);
  /// As many keys as the step's number says, from the step's key on; equal ones only if there are
  /// not enough, or if that is wanted.
  std::vector<const Object*> keys_of(const Step& step, int most, bool with_equal_ones);
  std::vector<const Object*> values_of(const Step& step, std::size_t count);

  // The model's side.
  Model& model() { return *model_; }
  std::unique_ptr<Model> new_model() const { return make_model_(class_.storage); }
  void set_model(std::unique_ptr<Model> model) { model_ = std::move(model); }
  Objects& objects() { return objects_; }
  /// A search: whether the key is there. Keeps account of the comparisons.
  bool searched(Model& model, const Object& key, bool whole_chain = false);
  /// The same for a key that is there, sought with an object that has no account.
  void searched_by_unknown(Model& model, int key);
  /// An insertion into a set or an assignment to a map's key.
  void stored(Model& model, const Object& key, const Object* value);
  void replaced(Entry& entry, const Object& value);
  /// Entries that go; iterators at them become void.
  void dropped(int key);
  void dropped_all();
  /// All entries of the model were given up without being freed.
  void abandoned();
  /// Locks that stay without belonging to an entry, and handles that stay alive.
  LockBook& book() { return book_; }
  void add_live(std::ptrdiff_t handles) { live_handles_ += handles; }

  // The cached arrays; null when there are none.
  std::shared_ptr<KnownArray> keys_cache;
  std::shared_ptr<KnownArray> values_cache;
  /// Both arrays as they would be built now.
  void build_caches();
  void drop_caches();
  /// An array that the program holds on to.
  struct HeldArray {
    standin::ArrayRef array;
    std::shared_ptr<KnownArray> known;
  };
  std::optional<HeldArray> held;

  // Iterators.
  std::optional<Slot>& slot(int number) { return slots_[static_cast<std::size_t>(number)]; }
  void set_slot(int number, support::Iterator iterator, std::optional<int> key);
  void clear_slot(int number);

  // The plugin's side.
  const support::Container& container() const { return *container_; }
  /// Another instance takes the container's place, which dies.
  void replace_container(support::Container container);
  standin::Host& host() { return host_; }

  // Comparison.
  /// What a call gave, as a program would print it, or the exception that it raised.
  std::string outcome(const std::function<std::string()>& call);
  /// What an element holds; says so if it is not the very object expected.
  std::string identified(const Object* expected, const support::Element& actual) const;
  std::string shown_key(const Object& key) const { return shown(class_.key, key); }
  std::string shown_value(const Object& value) const { return shown(*class_.value, value); }
  void expect(const std::string& what, const std::string& expected, const std::string& actual);
  template <class Number>
  void expect(const std::string& what, Number expected, Number actual) {
    expect(what, std::to_string(expected), std::to_string(actual));
  }
  /// The step's result, for the program as well.
  void expect_result(const std::string& expected, const std::string& actual);

  // Steps.
  void begin(std::size_t number, const Step& step);
  /// What every step leaves in order: the properties, no exception, the changed locks, the number
  /// of living handles.
  void check_state();
  /// The first keys of the order with their values, at most so many; the last ones of an ordered
  /// container, too. Whether the iteration ends where it should, if there are no more.
  void check_ends(int most);
  /// Everything: the whole order with its values, forwards and backwards, and all locks.
  void check_everything();
  /// Lets the container go, then looks at everything that should be left.
  void end();

  /// For programs: what the step in hand is about.
  Performed performed;
  void note_order();

 private:
  std::ptrdiff_t live_handles_beyond_objects() const;
  void check_element(const char* what, std::size_t place, const Object& expected,
                     const support::Element& actual);

  const support::ContainerClass& class_;
  ModelFactory make_model_;
  std::unique_ptr<standin::Host> own_host_;
  standin::Host& host_;
  Leftovers leftovers_;
  std::ptrdiff_t live_handles_;  // of the host itself, and what stays for good
  LockBook book_;
  Objects objects_;
  std::unique_ptr<Model> model_;
  std::optional<support::Container> container_;
  std::array<std::optional<Slot>, slot_count> slots_;
};

}  // namespace model

#endif
