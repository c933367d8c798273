#include "cases/workload.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "fasthost/blocks.h"

namespace {

// A bijection, so that different indices give different keys.
std::int32_t spread(std::uint32_t index) {
  index ^= index >> 16;
  index *= 0x85EBCA6BU;
  index ^= index >> 13;
  index *= 0xC2B2AE35U;
  index ^= index >> 16;
  return static_cast<std::int32_t>(index);
}

std::vector<std::uint32_t> random_order(std::size_t count, std::uint32_t seed) {
  std::vector<std::uint32_t> order(count);
  std::iota(order.begin(), order.end(), 0U);
  shuffle(order, seed);
  return order;
}

// Each value is the key that comes after its own in a random order.
template <class K>
std::vector<K> chain(const std::vector<K>& keys) {
  const auto order = random_order(keys.size(), 1);
  std::vector<K> values(keys.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    values[order[i]] = keys[order[(i + 1) % order.size()]];
  }
  return values;
}

// Indices of the keys to search, batch after batch.
std::vector<std::uint32_t> searched(std::size_t count, std::size_t batch) {
  std::vector<std::uint32_t> indices;
  for (std::uint32_t seed = 2; indices.size() < std::max(batch, fewest_searches); ++seed) {
    const auto order = random_order(count, seed);
    indices.insert(indices.end(), order.begin(),
                   order.begin() + static_cast<std::ptrdiff_t>(batch));
  }
  return indices;
}

// Mapped for good, and only as far as it is read: a small map needs few of its millions of lines.
std::string_view map_file(const std::string& name) {
  const int file = ::open(name.c_str(), O_RDONLY);
  struct stat status {};
  if (file < 0 || ::fstat(file, &status) != 0) {
    throw std::runtime_error("cannot read the words in " + name);
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  void* content = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  ::close(file);
  if (content == MAP_FAILED) throw std::runtime_error("cannot map the words in " + name);
  return {static_cast<const char*>(content), size};
}

std::vector<std::string_view> first_lines(std::string_view text, std::size_t count) {
  std::vector<std::string_view> lines;
  lines.reserve(count);
  while (lines.size() < count && !text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (lines.size() < count) throw std::runtime_error("the file of words is too short");
  return lines;
}

}  // namespace

template <class T>
void shuffle(std::vector<T>& elements, std::uint32_t seed) {
  std::uint64_t state = 0x9E3779B97F4A7C15U + seed;
  for (std::size_t left = elements.size(); left > 1; --left) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    const std::size_t chosen = ((state >> 32) * left) >> 32;
    std::swap(elements[left - 1], elements[chosen]);
  }
}
template void shuffle(std::vector<std::uint32_t>& elements, std::uint32_t seed);
template void shuffle(std::vector<std::int32_t>& elements, std::uint32_t seed);
template void shuffle(std::vector<REALstring>& elements, std::uint32_t seed);

Workload<std::int32_t> make_integer_workload(std::size_t count) {
  Workload<std::int32_t> workload;
  workload.keys.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    workload.keys[i] = spread(static_cast<std::uint32_t>(i));
  }
  workload.values = chain(workload.keys);
  workload.batch = std::min(count, largest_batch);
  for (const std::uint32_t index : searched(count, workload.batch)) {
    workload.hits.push_back(workload.keys[index]);
  }
  for (std::size_t i = 0; i < workload.hits.size(); ++i) {
    workload.misses.push_back(spread(static_cast<std::uint32_t>(count + i)));
  }
  return workload;
}

Workload<REALstring> make_string_workload(std::size_t count, const std::string& word_file) {
  Workload<REALstring> workload;
  workload.batch = std::min(count, largest_batch);
  const auto indices = searched(count, workload.batch);
  const auto lines = first_lines(map_file(word_file), count + indices.size());
  const auto make = [&](std::size_t line) {
    return fasthost::make_string(lines[line], static_cast<std::uint32_t>(line));
  };
  std::vector<REALstring> linked;
  for (std::size_t i = 0; i < count; ++i) workload.keys.push_back(make(i));
  for (std::size_t i = 0; i < count; ++i) linked.push_back(make(i));
  workload.values = chain(linked);
  for (const std::uint32_t index : indices) workload.hits.push_back(make(index));
  for (std::size_t i = count; i < lines.size(); ++i) workload.misses.push_back(make(i));
  return workload;
}
