// The order of a hashed container, told by libstdc++'s own chained hash table.
#ifndef ZRB_TESTS_SUPPORT_BUCKET_WITNESS_H
#define ZRB_TESTS_SUPPORT_BUCKET_WITNESS_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "support/elements.h"

namespace support {

/// Holds items by number, each with its hash; asks for 100 buckets at first.
class BucketWitness {
 public:
  BucketWitness();
  ~BucketWitness();

  void insert(std::uint32_t hash, int item);
  void erase(std::uint32_t hash, int item);
  void clear();

  std::vector<int> order() const;
  std::int32_t bucket_count() const;
  std::int32_t count() const;

 private:
  struct Table;
  std::unique_ptr<Table> table_;
};

/// The ELF hash over bytes taken as signed.
std::uint32_t elf_hash(std::string_view bytes);

/// The hash that a key should have: an integer's own value, the ELF hash of a text's UTF-8 bytes
/// (the string must be in UTF-8), what the host says of any other variant.
std::uint32_t expected_hash(const Element& key);

}  // namespace support

#endif
