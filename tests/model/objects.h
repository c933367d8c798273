// The keys and values of one sequence as host objects: made when first asked for, and the same
// objects from then on, so that their locks can be followed through all steps.
#ifndef ZRB_TESTS_MODEL_OBJECTS_H
#define ZRB_TESTS_MODEL_OBJECTS_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "model/contents.h"
#include "model/lock_book.h"

namespace model {

/// A key or value. Keys are equal when their numbers are.
struct Object {
  int number;
  const Content* content;
  bool other_form;
  support::Element element;
};

/// As a program prints it.
inline std::string shown(support::ElementType type, const Object& object) {
  const bool is_odd = object.content->kind >= ContentKind::odd_text;  // copies may look different
  return is_odd ? shown(object.element) : shown(type, *object.content);
}

class Objects {
 public:
  Objects(const support::ContainerClass& container_class, Scheme scheme, int key_count,
          int value_count, LockBook& book);

  int key_count() const { return static_cast<int>(key_contents_.size()); }
  int value_count() const { return static_cast<int>(value_contents_.size()); }

  const Object& key(int number, int copy);
  const Object& value(int number, int copy);
  /// The key's text as a string, for variant keys that hold one.
  const Object& key_text(int number);
  bool is_text(int number) const { return content(number).kind == ContentKind::text; }

  /// Takes in a key object that the plugin made; the element holds the only lock beyond the
  /// container's.
  const Object& adopt_key(int number, support::Element element);

  std::uint32_t hash(int key_number);
  /// How many handles of the host live for the objects made so far.
  std::size_t live_handles() const { return live_handles_; }

 private:
  using Made = std::map<std::pair<int, int>, const Object*>;

  const Content& content(int key_number) const {
    return key_contents_[static_cast<std::size_t>(key_number)];
  }
  const Object& made(Made& among, support::ElementType type, const std::vector<Content>& contents,
                     int number, int copy, bool is_key);
  const Object& remember(Object object, bool is_key);
  /// Makes all keys, whose order then is that of their handles.
  void make_keys_in_order_of_handles();

  const support::ContainerClass& class_;
  LockBook& book_;
  std::vector<Content> key_contents_;
  std::vector<Content> value_contents_;
  std::deque<Object> objects_;  // do not move
  Made keys_;
  Made values_;
  Made texts_;
  std::unordered_map<int, std::uint32_t> hashes_;
  std::size_t live_handles_ = 0;
};

}  // namespace model

#endif
