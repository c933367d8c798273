// The end of handles: what happens when the last lock goes.
#include "runtime/handles.h"

#include <cstring>
#include <deque>
#include <exception>
#include <new>
#include <string>

#include "runtime/arrays.h"
#include "runtime/blocks.h"
#include "runtime/classes.h"
#include "runtime/host.h"
#include "runtime/instances.h"
#include "runtime/ledger.h"
#include "runtime/variant_box.h"

namespace standin {
namespace blocks {

namespace {
constexpr std::align_val_t block_alignment{16};
std::uintptr_t last_serial = 0;
}  // namespace

void* allocate(std::size_t size) {
  void* block = ::operator new(size, block_alignment);
  std::memset(block, 0, size);
  return block;
}

void deallocate(void* block) {
  ::operator delete(block, block_alignment);
}

std::uintptr_t next_serial() {
  return ++last_serial;
}

namespace {

// A dead block that the ledger keeps is overwritten from here on, so that whoever still reads it is
// sure to notice.
constexpr int dead_byte = 0xDD;

void bury(void* handle, std::string description, std::size_t header, std::size_t size) {
  Ledger* ledger = Ledger::active_one();
  if (ledger != nullptr && ledger->died(handle, std::move(description))) {
    std::memset(static_cast<char*>(handle) + header, dead_byte, size - header);
  } else {
    deallocate(handle);
  }
}

// Only a strict ledger needs to know later what a handle was.
template <class Handle>
std::string last_description(Handle handle) {
  Ledger* ledger = Ledger::active_one();
  return ledger != nullptr && ledger->strict() ? describe(handle) : std::string();
}

void report_release_of_dead(const void* handle) {
  if (Ledger* ledger = Ledger::active_one()) {
    ledger->record(Violation::Kind::double_release, ledger->describe_safely(handle));
  }
}

}  // namespace
}  // namespace blocks

namespace detail {

void lock_of_dead(const void* handle) {
  if (Ledger* ledger = Ledger::active_one()) {
    ledger->record(Violation::Kind::use_after_release, ledger->describe_safely(handle));
  }
}

void release(REALstring handle) {
  if (handle->locks == 0) return blocks::report_release_of_dead(handle);
  std::string description = blocks::last_description(handle);
  handle->magic = magic::dead;
  handle->locks = 0;
  const std::size_t text_start =
      static_cast<std::size_t>(handle->data - reinterpret_cast<char*>(handle));
  blocks::bury(handle, std::move(description), text_start, text_start + 1 + handle->length);
}

void release(REALarray handle) {
  if (handle->block.locks == 0) return blocks::report_release_of_dead(handle);
  std::string description = blocks::last_description(handle);
  handle->block.locks = blocks::dying_locks;
  release_elements(handle);
  handle->block = {magic::dead, 0};
  blocks::bury(handle, std::move(description), sizeof *handle, sizeof *handle);
}

namespace {

void end_object(REALobject handle) {
  std::string description = blocks::last_description(handle);
  if (handle->block.magic == magic::variant) {
    release_box(handle);
    handle->block = {magic::dead, 0};
    blocks::bury(handle, std::move(description), sizeof *handle, sizeof(VariantBox));
    return;
  }
  const std::size_t size = handle->class_info->instance_size();
  end_instance(handle, description);
  handle->block = {magic::dead, 0};
  blocks::bury(handle, std::move(description), sizeof *handle, size);
}

// An object that is held by a dying one dies inside it. In a long chain that would need a deep
// stack, so from this depth on an object waits until the outermost one has ended.
constexpr int deepest_nesting = 64;
int nesting = 0;
std::deque<REALobject> waiting;

}  // namespace

void release(REALobject handle) {
  if (handle->block.locks == 0) return blocks::report_release_of_dead(handle);
  // The services that lock objects lock arrays too.
  if (handle->block.magic == magic::array) return release(reinterpret_cast<REALarray>(handle));

  if (nesting >= deepest_nesting) {
    handle->block.locks = blocks::dying_locks;
    waiting.push_back(handle);
    return;
  }
  ++nesting;
  end_object(handle);
  while (nesting == 1 && !waiting.empty()) {
    REALobject next = waiting.front();
    waiting.pop_front();
    end_object(next);
  }
  --nesting;
}

}  // namespace detail
}  // namespace standin
