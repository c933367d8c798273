// The elements that the scenes of one class are made of, kept from scene to scene, and the count of
// their locks.
#ifndef ZRB_TESTS_FAULTS_STOCK_H
#define ZRB_TESTS_FAULTS_STOCK_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "support/container_classes.h"
#include "support/elements.h"

namespace faults {

/// An entry of a container by the indices of its key and value; `nil_value` for nil, or 0, and for
/// the sets' entries, which have none.
struct EntryIndices {
  static constexpr int nil_value = -1;
  static constexpr int unknown = -2;
  int key = unknown;
  int value = nil_value;
  bool operator==(const EntryIndices&) const = default;
};
using Contents = std::vector<EntryIndices>;

std::string describe(const Contents& contents);

/// Keys ascend with their index. The variants that are keys of sets hold strings, those of maps
/// integers, so that both ways of comparing are met.
class Stock {
 public:
  static constexpr int size = 400;
  static constexpr int new_value = 395;  // the value that calls bring
  static constexpr int spare = 396;      // a key that no scene contains
  static constexpr int added = 394;      // the key that a call back adds

  explicit Stock(const support::ContainerClass& container_class);

  const support::Element& key(int index) const { return keys_[place(index)]; }
  /// Another object, of the same content.
  const support::Element& equal_key(int index) const { return equal_keys_[place(index)]; }
  const support::Element& value(int index) const { return values_[place(index)]; }

  int index_of_key(const support::Element& key) const;
  int index_of_value(const support::Element& value) const;

  /// How often the elements with indices below `used` are locked, and those that calls bring; 0
  /// for integers.
  struct Locks {
    std::vector<std::int64_t> keys, equal_keys, values;
  };
  Locks locks(int used) const;

 private:
  static std::size_t place(int index) { return static_cast<std::size_t>(index); }

  std::vector<support::Element> keys_, equal_keys_, values_;
  std::unordered_map<const void*, int> key_of_handle_, value_of_handle_;
  std::unordered_map<std::string, int> key_of_text_, value_of_text_;
};

}  // namespace faults

#endif
