// The keys and values that a measurement works on, the same for every subject.
#ifndef ZRB_CASES_WORKLOAD_H
#define ZRB_CASES_WORKLOAD_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/binary_interface.h"

/// Most searches in one batch; larger maps are sampled.
inline constexpr std::size_t largest_batch = 500'000;

/// Fewest searches of a kind that a workload has, so that the processor cannot learn by heart where
/// those in a small map end.
inline constexpr std::size_t fewest_searches = 100'000;

/// `keys[i]` is inserted with `values[i]`; the keys come in random order. The values lead from one
/// key to the next on a random way through all of them, so that a search can depend on the result
/// of the one before. Strings to search with are never the objects that are stored.
template <class K>
struct Workload {
  std::vector<K> keys;
  std::vector<K> values;
  std::vector<K> hits;    // batches, each in a random order of its own
  std::vector<K> misses;  // as many; none of them is among the keys
  std::size_t batch = 0;  // searches in one batch: one for each key, or a sample of the keys

  /// The batch whose turn it is.
  std::span<const K> batch_of(const std::vector<K>& searches, std::size_t turn) const {
    const std::size_t batches = searches.size() / batch;
    return {searches.data() + turn % batches * batch, batch};
  }
};

/// Of `count` distinct integers spread over the whole range.
Workload<std::int32_t> make_integer_workload(std::size_t count);

/// Of the first lines of a file of distinct words; the others are the misses. Throws
/// std::runtime_error when there are too few.
Workload<REALstring> make_string_workload(std::size_t count, const std::string& word_file);

/// Puts the elements in a random order that is the same in each process.
template <class T>
void shuffle(std::vector<T>& elements, std::uint32_t seed);

#endif
