// Bucket order, growth, and neighbours.
#include "model/hashed_model.h"

#include <algorithm>
#include <cstdlib>

namespace model {
namespace {

// As far as a test ever grows.
constexpr std::size_t primes[] = {193,   389,   769,   1543,   3079,   6151,  12289,
                                  24593, 49157, 98317, 196613, 393241, 786433};

}  // namespace

HashedModel::HashedModel() : buckets_(primes[0]) {}

Entry* HashedModel::find(int key) {
  const auto found = entries_.find(key);
  return found == entries_.end() ? nullptr : &found->second.entry;
}

void HashedModel::grow() {
  const std::size_t needed = entries_.size() + 1;
  if (needed <= buckets_.size()) return;
  std::vector<Chain> former(*std::lower_bound(std::begin(primes), std::end(primes), needed));
  former.swap(buckets_);
  // Each chain is taken apart from its head and pushed at the heads of the new ones.
  for (const Chain& chain : former) {
    for (const Hashed* hashed : chain) buckets_[bucket(hashed->hash)].push_front(hashed);
  }
}

void HashedModel::insert(const Entry& entry, std::uint32_t hash) {
  Hashed& hashed = entries_[entry.key->number];
  hashed = {entry, hash};
  buckets_[bucket(hash)].push_front(&hashed);
}

void HashedModel::erase(int key) {
  const auto found = entries_.find(key);
  if (found == entries_.end()) return;
  buckets_[bucket(found->second.hash)].remove(&found->second);
  entries_.erase(found);
}

void HashedModel::clear() {
  entries_.clear();
  for (Chain& chain : buckets_) chain.clear();
}

std::vector<Entry> HashedModel::order() const {
  std::vector<Entry> result;
  result.reserve(entries_.size());
  for (const Chain& chain : buckets_) {
    for (const Hashed* hashed : chain) result.push_back(hashed->entry);
  }
  return result;
}

std::optional<int> HashedModel::first() const {
  return first_from(0);
}

std::optional<int> HashedModel::first_from(std::size_t bucket) const {
  for (; bucket < buckets_.size(); ++bucket) {
    if (!buckets_[bucket].empty()) return buckets_[bucket].front()->entry.key->number;
  }
  return std::nullopt;
}

std::optional<int> HashedModel::next(int key) const {
  const Hashed& hashed = entries_.at(key);
  const std::size_t its_bucket = bucket(hashed.hash);
  const Chain& chain = buckets_[its_bucket];
  const auto behind = std::next(std::find(chain.begin(), chain.end(), &hashed));
  if (behind == chain.end()) return first_from(its_bucket + 1);
  return (*behind)->entry.key->number;
}

std::optional<int> HashedModel::last() const {
  std::abort();
}

std::optional<int> HashedModel::previous(int /*key*/) const {
  std::abort();
}

std::optional<int> HashedModel::lower_bound(int /*key*/) const {
  std::abort();
}

std::vector<const Object*> HashedModel::chain(std::uint32_t hash) const {
  std::vector<const Object*> result;
  for (const Hashed* hashed : buckets_[bucket(hash)]) result.push_back(hashed->entry.key);
  return result;
}

}  // namespace model
