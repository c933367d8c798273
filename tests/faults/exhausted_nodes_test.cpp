// A 64-bit process that gives the plugin no more memory for nodes: std::bad_alloc passes on, what
// was there before stays as it was, and all goes on when there is memory again.
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/address_sanitizer.h"
#include "support/plugin_test.h"

namespace {

constexpr std::size_t without_limit = std::numeric_limits<std::size_t>::max();

// What the system gives, in bytes at a time.
std::size_t largest_writable = without_limit;
std::size_t smallest_writable = 0;
std::size_t largest_readable = without_limit;
std::size_t largest_region = without_limit;

int refuse() {
  errno = ENOMEM;
  return -1;
}

}  // namespace

// These stand in for the C library's, in the plugin too, which reserves addresses and makes memory
// usable with them.
extern "C" [[gnu::visibility("default")]] int mprotect(void* address, std::size_t bytes,
                                                       int access) noexcept {
  const bool writable = (access & PROT_WRITE) != 0;
  if (writable && (bytes > largest_writable || bytes < smallest_writable)) return refuse();
  if (!writable && access == PROT_READ && bytes > largest_readable) return refuse();
  return static_cast<int>(::syscall(SYS_mprotect, address, bytes, access));
}
extern "C" [[gnu::visibility("default")]] void* mmap(void* address, std::size_t bytes, int access,
                                                     int flags, int file, off_t offset) noexcept {
  if (access == PROT_NONE && bytes > largest_region) {
    static_cast<void>(refuse());
    return MAP_FAILED;
  }
  return reinterpret_cast<void*>(::syscall(SYS_mmap, address, bytes, access, flags, file, offset));
}

namespace {

using standin::ObjectRef;
using support::Container;
using support::Element;

class MemoryForNodes : public support::ClassTest {
 protected:
  ~MemoryForNodes() override { free_memory(); }

  // Lets containers take what memory the plugin still has, in large pieces first.
  void use_up_memory() {
    largest_writable = 0;
    const support::ContainerClass& integers = support::class_named("IntegerHashSetZRB");
    for (bool more = true; more;) {
      hoard_.push_back(Container::make(integers));
      try {
        for (int i = 0;; ++i) {
          hoard_.back().put(i);
          more = i > 0;
        }
      } catch (const std::bad_alloc&) {
        more = hoard_.back().count() > 0;
      }
    }
  }

  // Whether there is enough for a new container. If not, it has no storage.
  bool can_construct() const {
    const Container container = Container::without_storage(container_class());
    try {
      container.construct();
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(container.first_word(), nullptr);
      return false;
    }
    return true;
  }

  void give_back_a_little() {
    while (!can_construct()) hoard_.pop_back();
  }

  void free_memory() {
    hoard_.clear();
    largest_writable = largest_readable = largest_region = without_limit;
    smallest_writable = 0;
  }

  // Whether a new container takes a key, now that the plugin asks for its first memory.
  bool can_hold_a_key() const {
    try {
      make().put(1);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }

 private:
  std::vector<Container> hoard_;
};
ZRB_FOR_CLASSES(MemoryForNodes, support::all_classes());
class MemoryForCopies : public MemoryForNodes {};
ZRB_FOR_CLASSES(MemoryForCopies, support::map_classes());

TEST_P(MemoryForNodes, an_insertion_that_gets_none_changes_nothing) {
  for (const int size : {0, 3, 20, 100}) {
    const Container container = make_with(size);
    use_up_memory();
    int next = size;
    bool refused = false;
    // What is left of the newest block can still be used.
    for (; !refused && next < 1000; ++next) {
      const std::vector<std::string> keys = container.described_keys();
      const Element new_key = key(next);
      const Element new_value = value(next);
      try {
        container.put(new_key, new_value);
      } catch (const std::bad_alloc&) {
        refused = true;
        EXPECT_EQ(container.described_keys(), keys);
        EXPECT_EQ(support::locks(new_value), support::one_lock(new_value));
      }
    }
    EXPECT_TRUE(refused) << size;
    EXPECT_EQ(can_construct(), container_class().is_hashed()) << "only trees begin with a node";
    EXPECT_EQ(container.count(), next - 1);
    free_memory();
    container.put(key(next), value(next));
    EXPECT_EQ(container.count(), next);
  }
}

TEST_P(MemoryForCopies, a_copy_that_gets_too_little_is_given_up) {
  const Container map = make_with(300);
  const auto clone = [&] { return ObjectRef::adopt(map.call<REALobject>("Clone as {Class}")); };
  use_up_memory();
  give_back_a_little();
  EXPECT_THROW(clone(), std::bad_alloc);
  EXPECT_EQ(map.count(), 300);
  free_memory();
  EXPECT_TRUE(clone());
}

TEST_P(MemoryForCopies, a_map_that_cannot_take_the_whole_of_another_can_be_used) {
  const Container source = make_with(300);
  const Container map = make();
  use_up_memory();
  give_back_a_little();
  EXPECT_THROW(map.call<void>("Constructor(other as {Class})", source.get()), std::bad_alloc);
  free_memory();
  const std::int32_t taken = map.count();
  EXPECT_LT(taken, 300);
  EXPECT_EQ(map.described_keys().size(), static_cast<std::size_t>(taken));
  map.put(1000);
  EXPECT_EQ(map.count(), taken + 1);
  EXPECT_EQ(map.described_keys().size(), static_cast<std::size_t>(taken) + 1);
}

TEST_P(MemoryForNodes, without_addresses_nothing_can_be_stored_and_later_it_can) {
  largest_region = 0;
  EXPECT_FALSE(can_hold_a_key());
  largest_region = without_limit;
  EXPECT_TRUE(can_hold_a_key());
}

TEST_P(MemoryForNodes, a_small_region_serves_where_there_is_no_large_one) {
  for (const std::size_t mebibytes : {65U, 256U}) {
    SCOPED_TRACE(mebibytes);
    restart(default_options());
    largest_region = mebibytes << 20;
    const Container container = make_with(1000);
    EXPECT_EQ(container.count(), 1000);
  }
}

TEST_P(MemoryForNodes, a_region_that_cannot_be_read_is_none) {
  largest_readable = 0;
  EXPECT_FALSE(can_hold_a_key());
  largest_readable = without_limit;
  EXPECT_TRUE(can_hold_a_key());
}

TEST_P(MemoryForNodes, memory_whose_own_bookkeeping_gets_none_is_not_used) {
  smallest_writable = std::size_t{1} << 20;
  EXPECT_FALSE(can_hold_a_key());
  smallest_writable = 0;
  EXPECT_TRUE(can_hold_a_key());
}

class RegionOfNodes : public support::PluginTest {};

TEST_F(RegionOfNodes, that_is_full_takes_no_more_until_something_goes) {
  largest_region = std::size_t{100} << 20;
  const Container container = Container::make(support::class_named("IntegerHashSetZRB"));
  std::int32_t next = 0;
  const auto fill = [&] {
    for (;; ++next) container.put(next);
  };
  EXPECT_THROW(fill(), std::bad_alloc);
  largest_region = without_limit;
  EXPECT_EQ(container.count(), next);
  EXPECT_GT(next, 1'000'000);
  EXPECT_EQ(container.remove(5), 1);
  container.put(next);
  EXPECT_EQ(container.count(), next);
  container.clear();
  container.put(1);
  EXPECT_EQ(container.count(), 1);
}

#ifndef ZRB_HAS_ADDRESS_SANITIZER  // under which plugins stay loaded
// How many pieces of addresses of this process are as large as a region, and not to be used yet.
int reserved_regions() {
  std::ifstream maps("/proc/self/maps");
  int count = 0;
  for (std::string line; std::getline(maps, line);) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char access[5] = "";
    if (std::sscanf(line.c_str(), "%lx-%lx %4s", &begin, &end, access) != 3) continue;
    if (end - begin > std::size_t{1} << 30 && std::string_view(access) == "---p") ++count;
  }
  return count;
}

TEST_F(RegionOfNodes, is_given_back_when_the_plugin_is_unloaded) {
  ASSERT_EQ(reserved_regions(), 0);
  {
    const Container container = Container::make(support::class_named("IntegerHashSetZRB"));
    for (std::int32_t key = 0; key < 1'000'000; ++key) container.put(key);
    EXPECT_EQ(reserved_regions(), 1);
  }
  restart(default_options());
  EXPECT_EQ(reserved_regions(), 0);
}
#endif

}  // namespace
