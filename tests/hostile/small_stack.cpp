// A stack of the test's own, with a page below it that nobody may touch.
#include "small_stack.h"

#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <exception>
#include <system_error>

namespace hostile {
namespace {

void require(int error, const char* what) {
  if (error != 0) throw std::system_error(error, std::generic_category(), what);
}

class Stack {
 public:
  Stack() : guard_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))) {
    void* const mapped = ::mmap(nullptr, guard_ + small_stack, PROT_READ | PROT_WRITE,
                                MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (mapped == MAP_FAILED) require(errno, "mmap");
    memory_ = static_cast<char*>(mapped);
    if (::mprotect(memory_, guard_, PROT_NONE) != 0) require(errno, "mprotect");
  }
  ~Stack() { ::munmap(memory_, guard_ + small_stack); }
  Stack(const Stack&) = delete;
  Stack& operator=(const Stack&) = delete;

  void* lowest() const { return memory_ + guard_; }

 private:
  std::size_t guard_;
  char* memory_;
};

struct Work {
  const std::function<void()>& function;
  std::exception_ptr thrown;
};

void* run(void* argument) {
  Work& work = *static_cast<Work*>(argument);
  try {
    work.function();
  } catch (...) {
    work.thrown = std::current_exception();
  }
  return nullptr;
}

}  // namespace

void run_on_small_stack(const std::function<void()>& work) {
  const Stack stack;
  Work shared{work, nullptr};
  pthread_attr_t attributes;
  require(::pthread_attr_init(&attributes), "pthread_attr_init");
  int error = ::pthread_attr_setstack(&attributes, stack.lowest(), small_stack);
  pthread_t thread{};
  if (error == 0) error = ::pthread_create(&thread, &attributes, &run, &shared);
  ::pthread_attr_destroy(&attributes);
  require(error, "pthread_create");
  require(::pthread_join(thread, nullptr), "pthread_join");
  if (shared.thrown) std::rethrow_exception(shared.thrown);
}

}  // namespace hostile
