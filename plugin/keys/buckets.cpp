#include "keys/buckets.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <memory>
#include <new>

#include "keys/large_pages.h"
#include "keys/node_blocks.h"

namespace {

// Where nodes have a region of their own, arrays of a middle size lie there too: the heap would ask
// the system for each of them anew, page by page, and give it back at once, which takes longer than
// to fill the array. Larger ones fit no block; of smaller ones too much of a block would be unused.
constexpr bool has_region = sizeof(void*) > sizeof(NodeLink);
constexpr std::size_t smallest_in_region = std::size_t{64} << 10;
// Buckets are looked up all over an array; so small pages make up a twentieth of the time of a
// search in a large one.
constexpr std::size_t smallest_with_large_pages = std::size_t{4} << 20;

std::size_t bytes_of(std::uint32_t count) {
  return std::size_t{count} * sizeof(NodeLink);
}

bool is_in_region(std::uint32_t count) {
  return has_region && bytes_of(count) >= smallest_in_region &&
         bytes_of(count) <= largest_node_block;
}

std::uint32_t block_bytes(std::uint32_t count) {
  return static_cast<std::uint32_t>(std::bit_ceil(bytes_of(count)));
}

// As many as the host's own address space could hold, in a wider one too.
void* allocate_heads(std::uint32_t count) {
  if (count >= 0x40000000) throw std::bad_alloc();
  if (is_in_region(count)) return allocate_node_block(block_bytes(count));
  void* const heads = ::operator new(bytes_of(count));
  if (bytes_of(count) >= smallest_with_large_pages) prefer_large_pages(heads, bytes_of(count));
  return heads;
}

}  // namespace

Buckets::Buckets(std::uint32_t count)
    : heads_(static_cast<NodeLink*>(allocate_heads(count))), remainder_(count), count_(count) {
  forget_all();
}

Buckets::~Buckets() {
  if (is_in_region(count_)) {
    release_node_block(reinterpret_cast<std::byte*>(heads_), block_bytes(count_));
  } else {
    ::operator delete(heads_);
  }
}

std::unique_ptr<Buckets> Buckets::exchange(std::uint32_t count) try {
  auto given = std::make_unique<Buckets>(count);
  swap(*given);
  return given;
} catch (...) {  // by std::bad_alloc alone
  return nullptr;
}

void Buckets::forget_all() {
  std::fill_n(heads_, count_, no_node);
}
