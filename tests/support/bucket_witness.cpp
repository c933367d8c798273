// The witness: `__gnu_cxx::hash_set`, which keeps the original's primes, growth and chains.
#include "support/bucket_witness.h"

#include <ext/hash_set>

#include "runtime/strings.h"
#include "runtime/variants.h"

namespace support {
namespace {

struct Item {
  std::uint32_t hash;
  int number;
};

struct HashOfItem {
  std::size_t operator()(const Item& item) const { return item.hash; }
};

struct SameItem {
  bool operator()(const Item& a, const Item& b) const { return a.number == b.number; }
};

}  // namespace

struct BucketWitness::Table {
  __gnu_cxx::hash_set<Item, HashOfItem, SameItem> items{100};
};

BucketWitness::BucketWitness() : table_(std::make_unique<Table>()) {}
BucketWitness::~BucketWitness() = default;

void BucketWitness::insert(std::uint32_t hash, int item) {
  table_->items.insert({hash, item});
}
void BucketWitness::erase(std::uint32_t hash, int item) {
  table_->items.erase({hash, item});
}
void BucketWitness::clear() {
  table_->items.clear();
}

std::vector<int> BucketWitness::order() const {
  std::vector<int> result;
  for (const Item& item : table_->items) result.push_back(item.number);
  return result;
}

std::int32_t BucketWitness::bucket_count() const {
  return static_cast<std::int32_t>(table_->items.bucket_count());
}

std::int32_t BucketWitness::count() const {
  return static_cast<std::int32_t>(table_->items.size());
}

std::uint32_t elf_hash(std::string_view bytes) {
  std::uint32_t hash = 0;
  for (const char byte : bytes) {
    hash = (hash << 4) +
           static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<signed char>(byte)));
    const std::uint32_t top = hash & 0xF0000000u;
    hash = hash ^ top ^ (top >> 24);
  }
  return hash;
}

std::uint32_t expected_hash(const Element& key) {
  if (const auto* integer = std::get_if<std::int32_t>(&key)) {
    return static_cast<std::uint32_t>(*integer);
  }
  if (const auto* string = std::get_if<standin::StringRef>(&key)) {
    return elf_hash(standin::bytes(string->get()));
  }
  const REALobject variant = std::get<standin::ObjectRef>(key).get();
  return standin::variant_type(variant) == VariantType::string
             ? elf_hash(standin::bytes(standin::to_string(variant).get()))
             : standin::variant_hash(variant);
}

}  // namespace support
