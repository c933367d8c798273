#include "elf_file.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace binary {

ElfFile::ElfFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  bytes_.assign(std::istreambuf_iterator<char>(in), {});
  constexpr unsigned char width = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
  if (bytes_.size() < sizeof header_) throw std::runtime_error(path + " cannot be read");
  header_ = read<ElfW(Ehdr)>(0);
  if (std::memcmp(header_.e_ident, ELFMAG, SELFMAG) != 0 || header_.e_ident[EI_CLASS] != width ||
      header_.e_type != ET_DYN) {
    throw std::runtime_error(path + " is no shared library of this build's width");
  }
}

template <class Record>
Record ElfFile::read(std::size_t offset) const {
  Record record;
  if (offset + sizeof record > bytes_.size()) throw std::runtime_error("the file is cut short");
  std::memcpy(&record, bytes_.data() + offset, sizeof record);
  return record;
}

template <class Record>
std::vector<Record> ElfFile::records(const ElfW(Shdr) & section) const {
  std::vector<Record> all;
  for (std::size_t offset = 0; offset < section.sh_size; offset += sizeof(Record)) {
    all.push_back(read<Record>(section.sh_offset + offset));
  }
  return all;
}

std::vector<ElfW(Phdr)> ElfFile::segments(std::uint32_t type) const {
  std::vector<ElfW(Phdr)> found;
  for (std::size_t i = 0; i < header_.e_phnum; ++i) {
    const auto segment = read<ElfW(Phdr)>(header_.e_phoff + i * sizeof(ElfW(Phdr)));
    if (segment.p_type == type) found.push_back(segment);
  }
  return found;
}

std::vector<ElfW(Shdr)> ElfFile::sections() const {
  std::vector<ElfW(Shdr)> all;
  for (std::size_t i = 0; i < header_.e_shnum; ++i) {
    all.push_back(read<ElfW(Shdr)>(header_.e_shoff + i * sizeof(ElfW(Shdr))));
  }
  return all;
}

std::string ElfFile::name(const ElfW(Shdr) & section) const {
  return text(header_.e_shstrndx, section.sh_name);
}

std::string ElfFile::text(std::size_t string_section, std::size_t offset) const {
  const std::size_t start = sections().at(string_section).sh_offset + offset;
  return bytes_.substr(start, bytes_.find('\0', start) - start);
}

std::vector<std::uintptr_t> ElfFile::dynamic(std::intptr_t tag) const {
  std::vector<std::uintptr_t> values;
  for (const auto& section : sections()) {
    if (section.sh_type != SHT_DYNAMIC) continue;
    for (const auto& entry : records<ElfW(Dyn)>(section)) {
      if (entry.d_tag == tag) values.push_back(entry.d_un.d_val);
    }
  }
  return values;
}

std::vector<std::string> ElfFile::dynamic_names(std::intptr_t tag) const {
  std::vector<std::string> names;
  for (const auto& section : sections()) {
    if (section.sh_type != SHT_DYNAMIC) continue;
    for (const std::uintptr_t offset : dynamic(tag)) names.push_back(text(section.sh_link, offset));
  }
  return names;
}

std::vector<Symbol> ElfFile::dynamic_symbols() const {
  std::vector<Symbol> symbols;
  for (const auto& section : sections()) {
    if (section.sh_type != SHT_DYNSYM) continue;
    for (const auto& symbol : records<ElfW(Sym)>(section)) {
      if (symbol.st_name == 0) continue;
      symbols.push_back({text(section.sh_link, symbol.st_name),
                         static_cast<unsigned char>(ELF32_ST_TYPE(symbol.st_info)),
                         symbol.st_shndx != SHN_UNDEF});
    }
  }
  return symbols;
}

std::vector<std::string> ElfFile::functions_in(std::string_view section_name) const {
  std::vector<std::string> functions;
  for (const auto& section : sections()) {
    if (name(section) != section_name) continue;
    std::uintptr_t place = section.sh_addr;
    for (const auto stored : records<std::uintptr_t>(section)) {
      functions.push_back(function_at(relocated(place, stored)));
      place += sizeof(void*);
    }
  }
  return functions;
}

std::string ElfFile::function_at(std::uintptr_t address) const {
  for (const auto& section : sections()) {
    if (section.sh_type != SHT_SYMTAB) continue;
    for (const auto& symbol : records<ElfW(Sym)>(section)) {
      if (ELF32_ST_TYPE(symbol.st_info) == STT_FUNC && symbol.st_value == address) {
        return text(section.sh_link, symbol.st_name);
      }
    }
  }
  return "unknown function at " + std::to_string(address);
}

// Where relocations carry their addends, what the place holds in the file does not count.
std::uintptr_t ElfFile::relocated(std::uintptr_t address, std::uintptr_t stored) const {
  for (const auto& section : sections()) {
    if (section.sh_type != SHT_RELA) continue;
    for (const auto& relocation : records<ElfW(Rela)>(section)) {
      if (relocation.r_offset == address) {
        return static_cast<std::uintptr_t>(relocation.r_addend);
      }
    }
  }
  return stored;
}

}  // namespace binary
