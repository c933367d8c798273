// The standard streams belong to the host program: the plugin neither reads nor writes them,
// whatever it is called for.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "routines.h"
#include "scene.h"
#include "support/plugin_test.h"

namespace {

// Puts an empty file in place of a standard stream, and the stream back.
class Watch {
 public:
  explicit Watch(int stream) : stream_(stream), original_(dup(stream)), file_(std::tmpfile()) {
    std::fflush(nullptr);
    if (original_ < 0 || file_ == nullptr || dup2(fileno(file_), stream_) < 0) {
      throw std::runtime_error("a standard stream cannot be replaced");
    }
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    put_back();
    std::fclose(file_);
  }

  // How many bytes were written since, by whatever way.
  off_t put_back() {
    std::fflush(nullptr);
    if (original_ >= 0) {
      dup2(original_, stream_);
      close(original_);
      original_ = -1;
    }
    return lseek(fileno(file_), 0, SEEK_END);
  }

 private:
  int stream_;
  int original_;
  std::FILE* file_;
};

// Puts bytes to read in place of the standard input.
class InputWatch {
 public:
  InputWatch() : original_(dup(STDIN_FILENO)), file_(std::tmpfile()) {
    if (file_ == nullptr) throw std::runtime_error("there is no temporary file");
    std::fputs("not for the plugin\n", file_);
    std::rewind(file_);
    dup2(fileno(file_), STDIN_FILENO);
  }
  InputWatch(const InputWatch&) = delete;
  InputWatch& operator=(const InputWatch&) = delete;
  ~InputWatch() {
    if (original_ >= 0) {
      dup2(original_, STDIN_FILENO);
      close(original_);
    } else {
      close(STDIN_FILENO);
    }
    std::fclose(file_);
  }

  off_t bytes_read() const { return lseek(STDIN_FILENO, 0, SEEK_CUR); }

 private:
  int original_;  // negative when there was no input
  std::FILE* file_;
};

class StandardStreams : public support::ClassTest {
 protected:
  // The plugin is loaded anew, and every routine called in some states.
  void run_everything() {
    restart(default_options());
    const faults::Stock stock(container_class());
    const faults::Access access(container_class(), stock);
    for (const faults::Routine& routine : faults::registered_routines(container_class())) {
      for (const int elements : {faults::no_storage, 0, 5, 193}) {
        for (const faults::Given given : faults::cases(routine, elements)) {
          faults::Scene(routine, access, stock, elements, given).call();
          ++calls_;
        }
      }
    }
  }

  int calls_ = 0;
};

TEST_P(StandardStreams, are_left_alone_by_every_routine) {
  const InputWatch input;
  Watch output(STDOUT_FILENO);
  Watch complaints(STDERR_FILENO);
  ASSERT_NO_THROW(run_everything());
  EXPECT_EQ(complaints.put_back(), 0);
  EXPECT_EQ(output.put_back(), 0);
  EXPECT_EQ(input.bytes_read(), 0);
  EXPECT_GT(calls_, 100);
}

// That a watch sees what is written past the C library, too.
TEST(StandardStreamWatch, counts_what_is_written) {
  Watch output(STDOUT_FILENO);
  std::fputs("four", stdout);
  const auto written = write(STDOUT_FILENO, "six...", 6);
  EXPECT_EQ(output.put_back(), 10);
  EXPECT_EQ(written, 6);
}

ZRB_FOR_CLASSES(StandardStreams, support::all_classes());

}  // namespace
