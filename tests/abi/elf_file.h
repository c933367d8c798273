// A shared library's file as the dynamic linker sees it: of the width of this build.
#ifndef ZRB_TESTS_ABI_ELF_FILE_H
#define ZRB_TESTS_ABI_ELF_FILE_H

#include <link.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace binary {

struct Symbol {
  std::string name;
  unsigned char type;  // STT_...
  bool is_defined;
};

class ElfFile {
 public:
  /// Reads the file; std::runtime_error when it is no shared library of this width.
  explicit ElfFile(const std::string& path);

  /// Everything, as stored.
  const std::string& bytes() const { return bytes_; }

  std::vector<ElfW(Phdr)> segments(std::uint32_t type) const;
  std::vector<ElfW(Shdr)> sections() const;
  std::string name(const ElfW(Shdr) & section) const;

  /// The values of every dynamic entry with this tag.
  std::vector<std::uintptr_t> dynamic(std::intptr_t tag) const;
  /// The same, for tags whose values are names.
  std::vector<std::string> dynamic_names(std::intptr_t tag) const;

  /// What is exported and imported, without versions.
  std::vector<Symbol> dynamic_symbols() const;

  /// The functions whose addresses are in a section such as ".init_array", as they will be once the
  /// library is loaded, by the names of the full symbol table; none when there is no such section.
  std::vector<std::string> functions_in(std::string_view section) const;

 private:
  template <class Record>
  Record read(std::size_t offset) const;
  template <class Record>
  std::vector<Record> records(const ElfW(Shdr) & section) const;
  std::string text(std::size_t string_section, std::size_t offset) const;
  std::string function_at(std::uintptr_t address) const;
  std::uintptr_t relocated(std::uintptr_t address, std::uintptr_t stored) const;

  std::string bytes_;
  ElfW(Ehdr) header_{};
};

}  // namespace binary

#endif
