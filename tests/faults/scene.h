// One call of one routine, prepared: a container in a certain state, and arguments.
#ifndef ZRB_TESTS_FAULTS_SCENE_H
#define ZRB_TESTS_FAULTS_SCENE_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "access.h"
#include "routines.h"
#include "stock.h"

namespace faults {

/// The states of a container: how many elements it has, -1 for no storage. A hashed one with 193 or
/// 389 elements grows at the next, and with one more has just grown.
inline constexpr int no_storage = -1;
inline constexpr int small_states[] = {no_storage, 0, 1, 5};
inline constexpr int large_states[] = {193, 194, 389, 390};
std::string state_name(int elements);

/// What the arguments are: a key that is there, an index inside, an object that is given; or a key
/// that is not there, an index behind the end; or nil for objects.
enum class Given { present, absent, nil };
const char* name(Given given);

/// The cases that a routine has in a state: keys that are there need elements.
std::vector<Given> cases(const Routine& routine, int elements);

class Scene {
 public:
  /// In a state of one element or less, the instance's cached arrays are filled, if the routine is
  /// one to drop them. `more_locks` on the container are left to the host, which cannot lock.
  Scene(const Routine& routine, const Access& access, const Stock& stock, int elements, Given given,
        int more_locks = 0);
  ~Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  /// Makes the call and keeps its result, or the exception that it raised in the host's language.
  /// A C++ exception passes through.
  void call();
  /// The result as text: elements by their content, iterators by their key, containers by their
  /// content, "raises ..." for an exception.
  std::string result() const;

  REALobject container() const { return container_.get(); }
  /// The host lets go of the instance; from then on only `end` may be called.
  void destroy_container() { container_.reset(); }
  void destroy_iterator() { iterator_.reset(); }
  const Contents& before() const { return before_; }
  /// The content now; nothing for a container that cannot be walked.
  std::optional<Contents> now() const;
  bool has_storage() const { return access_.has_storage(container_.get()); }
  /// The key that the iterator under test names; `EntryIndices::unknown` when there is none.
  int iterator_key() const;
  /// How many elements an array, a Dictionary or another map has that is an argument.
  static int source_size(int elements) { return elements < 3 ? 3 : elements; }
  /// The index of the key argument.
  int key_index() const { return key_index_; }
  int elements() const { return elements_; }
  Given given() const { return given_; }

  /// Whether the former storage was given up without being freed, as constructors do.
  bool left_storage_behind() const;

  /// Locks of comparisons that the call left on the stored keys, less those on the key argument:
  /// at most one, when a comparison is cut short between its two locks.
  std::int64_t comparison_difference(const Contents& now) const;

  /// Ends everything but the stock; then tells what is wrong with locks and handles, "" for
  /// nothing. `odd`: a comparison may have been cut short between its two locks.
  std::string end(bool odd);

 private:
  void fill(int elements);
  void add_arguments();
  std::string text_of_object(REALobject object) const;
  standin::Value argument(Argument argument, const standin::Type& type);

  const Routine& routine_;
  const Access& access_;
  const Stock& stock_;
  int elements_;
  Given given_;
  int key_index_;
  std::size_t live_before_;
  Stock::Locks locks_before_;
  standin::ObjectRef container_;
  standin::ObjectRef iterator_;
  void* storage_ = nullptr;
  bool leaves_storage_ = false;
  Contents before_;
  std::vector<standin::Value> arguments_;
  standin::Value result_;
  std::string raised_;
  Stock::Locks locks_at_call_;
  bool cached_at_call_ = false;
};

}  // namespace faults

#endif
