// Standard output, in a buffer that can be written out whatever has happened.
#include "output_buffer.h"

#include "write_all.h"

namespace console {

OutputBuffer::OutputBuffer(int file) : file_(file) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

bool OutputBuffer::write_out() noexcept {
  const bool written = write_all(file_, {pbase(), static_cast<std::size_t>(pptr() - pbase())});
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return written;
}

OutputBuffer::int_type OutputBuffer::overflow(int_type c) {
  if (!write_out()) return traits_type::eof();
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  return sputc(traits_type::to_char_type(c));
}

}  // namespace console
