// Standard output, in a buffer that can be written out whatever has happened.
#ifndef ZRB_CONSOLE_OUTPUT_BUFFER_H
#define ZRB_CONSOLE_OUTPUT_BUFFER_H

#include <array>
#include <ostream>
#include <streambuf>

namespace console {

class OutputBuffer final : public std::streambuf {
 public:
  explicit OutputBuffer(int file);
  // Writes what is there, but drops it if that fails. May be called from a signal handler.
  bool write_out() noexcept;

 protected:
  int_type overflow(int_type c) override;
  int sync() override { return write_out() ? 0 : -1; }

 private:
  int file_;
  std::array<char, 65536> buffer_{};
};

// While it lives, a stream goes through another buffer.
class Redirection {
 public:
  Redirection(std::ostream& stream, std::streambuf& buffer)
      : stream_(stream), before_(stream.rdbuf(&buffer)) {}
  ~Redirection() {
    stream_.flush();
    stream_.rdbuf(before_);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

 private:
  std::ostream& stream_;
  std::streambuf* before_;
};

}  // namespace console

#endif
