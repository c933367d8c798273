// Shared libraries as files, looked at before the loader maps them.
#include "runtime/library_file.h"

#include <link.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>

namespace standin {
namespace {

constexpr unsigned char own_word_size = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;

template <class Record>
bool read_at(std::ifstream& file, std::uint64_t offset, Record& record) {
  file.seekg(static_cast<std::streamoff>(offset));
  return static_cast<bool>(file.read(reinterpret_cast<char*>(&record), sizeof record));
}

}  // namespace

bool is_cut_short(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
  ElfW(Ehdr) header{};
  if (!read_at(file, 0, header)) return false;
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return false;
  if (header.e_ident[EI_CLASS] != own_word_size || header.e_phentsize != sizeof(ElfW(Phdr))) {
    return false;
  }
  for (std::uint64_t i = 0; i < header.e_phnum; ++i) {
    ElfW(Phdr) segment{};
    if (!read_at(file, header.e_phoff + i * sizeof segment, segment)) return true;
    const std::uint64_t offset = segment.p_offset;
    if (segment.p_type == PT_LOAD && (offset > size || segment.p_filesz > size - offset)) {
      return true;
    }
  }
  return false;
}

}  // namespace standin
