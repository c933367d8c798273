// The allocation functions of this program, and so of the plugin that it loads.
#include "memory_limit.h"

#include <malloc.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace fuzz {
namespace {

constexpr std::size_t page = 4096;
constexpr std::size_t usual_alignment = alignof(std::max_align_t);

std::size_t in_use = 0;
std::size_t largest_block = SIZE_MAX;
std::size_t highest_use = SIZE_MAX;

// Null when the limit or the machine refuses it.
void* try_allocate(std::size_t size, std::size_t alignment) noexcept {
  if (size > largest_block || (size > page && in_use > highest_use)) return nullptr;
  void* block = nullptr;
  if (posix_memalign(&block, alignment, size == 0 ? 1 : size) != 0) return nullptr;
  in_use += malloc_usable_size(block);
  return block;
}

void* allocate(std::size_t size, std::size_t alignment) {
  void* const block = try_allocate(size, alignment);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void release(void* block) {
  if (block == nullptr) return;
  in_use -= malloc_usable_size(block);
  std::free(block);
}

}  // namespace

MemoryLimit::MemoryLimit(std::size_t block, std::size_t total) {
  largest_block = block;
  highest_use = in_use + total;
}

MemoryLimit::~MemoryLimit() {
  largest_block = highest_use = SIZE_MAX;
}

}  // namespace fuzz

// All that allocate and release, so that none meets a block of the C++ runtime's own.
void* operator new(std::size_t size) {
  return fuzz::allocate(size, fuzz::usual_alignment);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return fuzz::try_allocate(size, fuzz::usual_alignment);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return fuzz::allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size) {
  return fuzz::allocate(size, fuzz::usual_alignment);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return fuzz::try_allocate(size, fuzz::usual_alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return fuzz::allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block, std::size_t) noexcept {
  fuzz::release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  fuzz::release(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  fuzz::release(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  fuzz::release(block);
}
void operator delete(void* block) noexcept {
  fuzz::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  fuzz::release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  fuzz::release(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
  fuzz::release(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
  fuzz::release(block);
}
void operator delete[](void* block) noexcept {
  fuzz::release(block);
}
