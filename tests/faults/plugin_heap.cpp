// The allocation functions of this program.
#include "plugin_heap.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <new>
#include <set>

#include "runtime/address_sanitizer.h"

#ifndef ZRB_HAS_ADDRESS_SANITIZER
// glibc's own, below the names that programs may replace.
extern "C" void* __libc_malloc(std::size_t size);                     // NOLINT
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);  // NOLINT
#endif

namespace faults::plugin_heap {
namespace {

void* plain_malloc(std::size_t size) {
#ifdef ZRB_HAS_ADDRESS_SANITIZER
  return std::malloc(size);
#else
  return __libc_malloc(size);
#endif
}

// For the book of blocks, which must not go through what it keeps book of.
template <class T>
struct PlainAllocator {
  using value_type = T;
  PlainAllocator() = default;
  template <class Other>
  PlainAllocator(const PlainAllocator<Other>&) {}  // NOLINT: allocators convert
  T* allocate(std::size_t count) { return static_cast<T*>(plain_malloc(count * sizeof(T))); }
  void deallocate(T* block, std::size_t) { std::free(block); }
  bool operator==(const PlainAllocator&) const { return true; }
};

std::uintptr_t plugin_begin = 0;
std::uintptr_t plugin_end = 0;
std::size_t failing = 0;
bool all_that_follow = false;
std::size_t asked_for = 0;

std::set<void*, std::less<>, PlainAllocator<void*>>& blocks() {
  static auto* const set =
      new (plain_malloc(sizeof(std::set<void*, std::less<>, PlainAllocator<void*>>)))
          std::set<void*, std::less<>, PlainAllocator<void*>>;
  return *set;
}

bool is_plugin(void* return_address) {
  const auto address = reinterpret_cast<std::uintptr_t>(return_address);
  return address >= plugin_begin && address < plugin_end;
}

bool fails_now() {
  ++asked_for;
  return failing != 0 && (asked_for == failing || (all_that_follow && asked_for > failing));
}

void* allocate(std::size_t size, void* caller) {
  const bool is_for_plugin = is_plugin(caller);
  void* const block = is_for_plugin && fails_now() ? nullptr : plain_malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  if (is_for_plugin) blocks().insert(block);
  return block;
}

void release(void* block) {
  if (block != nullptr && plugin_end != 0) blocks().erase(block);
  std::free(block);
}

int find_range(dl_phdr_info* info, std::size_t, void* routine) {
  const auto wanted = reinterpret_cast<std::uintptr_t>(routine);
  std::uintptr_t begin = UINTPTR_MAX;
  std::uintptr_t end = 0;
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    if (info->dlpi_phdr[i].p_type != PT_LOAD) continue;
    const std::uintptr_t start = info->dlpi_addr + info->dlpi_phdr[i].p_vaddr;
    begin = start < begin ? start : begin;
    end = start + info->dlpi_phdr[i].p_memsz > end ? start + info->dlpi_phdr[i].p_memsz : end;
  }
  if (wanted < begin || wanted >= end) return 0;
  plugin_begin = begin;
  plugin_end = end;
  return 1;
}

}  // namespace

void attend_to(void* routine) {
  plugin_begin = plugin_end = 0;
  if (dl_iterate_phdr(&find_range, routine) == 0) std::abort();
}

std::size_t live_blocks() {
  return blocks().size();
}

void fail_at(std::size_t nth, bool from_there_on) {
  failing = nth;
  all_that_follow = from_there_on;
  asked_for = 0;
}

std::size_t stop_failing() {
  failing = 0;
  return asked_for;
}

}  // namespace faults::plugin_heap

using namespace faults::plugin_heap;

void* operator new(std::size_t size) {
  return allocate(size, __builtin_return_address(0));
}
void* operator new[](std::size_t size) {
  return allocate(size, __builtin_return_address(0));
}
void operator delete(void* block) noexcept {
  release(block);
}
void operator delete[](void* block) noexcept {
  release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  release(block);
}

#ifndef ZRB_HAS_ADDRESS_SANITIZER
// To be found by the plugin, these have to be visible; gcc takes that for granted, clang does not.
extern "C" [[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept {
  if (is_plugin(__builtin_return_address(0)) && fails_now()) return nullptr;
  return __libc_malloc(size);
}
extern "C" [[gnu::visibility("default")]] void* calloc(std::size_t count,
                                                       std::size_t size) noexcept {
  if (is_plugin(__builtin_return_address(0)) && fails_now()) return nullptr;
  return __libc_calloc(count, size);
}
#endif
