// A 64-bit process that gives the plugin no more memory for nodes: std::bad_alloc passes on, what
// was there before stays as it was, and all goes on when there is memory again.
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string>
#include <vector>

#include "support/plugin_test.h"

namespace {

bool system_has_memory = true;

}  // namespace

// Stands in for the C library's, in the plugin too, which makes memory usable with it.
extern "C" [[gnu::visibility("default")]] int mprotect(void* address, std::size_t bytes,
                                                       int access) noexcept {
  if (!system_has_memory && (access & PROT_WRITE) != 0) {
    errno = ENOMEM;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_mprotect, address, bytes, access));
}

namespace {

using support::Container;
using support::Element;

class MemoryForNodes : public support::ClassTest {
 protected:
  ~MemoryForNodes() override { system_has_memory = true; }

  // Lets containers take what memory the plugin still has, in large pieces first.
  void use_up_memory() {
    system_has_memory = false;
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

  void free_memory() {
    hoard_.clear();
    system_has_memory = true;
  }

 private:
  std::vector<Container> hoard_;
};
ZRB_FOR_CLASSES(MemoryForNodes, support::all_classes());

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

}  // namespace
