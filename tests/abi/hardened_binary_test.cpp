// How the plugin's binary is protected, and that it does nothing before it is called: what the host
// program around it has to rely on.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "elf_file.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

class HardenedBinary : public ::testing::Test {
 protected:
  const binary::ElfFile plugin{ZRB_PLUGIN_PATH};
};

TEST_F(HardenedBinary, all_symbols_are_bound_when_it_is_loaded) {
  const auto flags = plugin.dynamic(DT_FLAGS);
  const auto more_flags = plugin.dynamic(DT_FLAGS_1);
  ASSERT_EQ(flags.size(), 1u);
  ASSERT_EQ(more_flags.size(), 1u);
  EXPECT_TRUE(flags[0] & DF_BIND_NOW);
  EXPECT_TRUE(more_flags[0] & DF_1_NOW);
}

// With immediate binding there is no table of addresses left that has to stay writable.
TEST_F(HardenedBinary, tables_of_addresses_are_read_only_once_they_are_filled) {
  const auto relro = plugin.segments(PT_GNU_RELRO);
  ASSERT_EQ(relro.size(), 1u);
  std::vector<std::string> tables;
  for (const auto& section : plugin.sections()) {
    const std::string name = plugin.name(section);
    if (name != ".init_array" && name != ".fini_array" && name != ".dynamic" &&
        name.rfind(".got", 0) != 0)
      continue;
    tables.push_back(name);
    EXPECT_GE(section.sh_addr, relro[0].p_vaddr) << name;
    EXPECT_LE(section.sh_addr + section.sh_size, relro[0].p_vaddr + relro[0].p_memsz) << name;
  }
  EXPECT_THAT(tables, IsSupersetOf({".init_array", ".fini_array", ".dynamic", ".got"}));
}

TEST_F(HardenedBinary, code_needs_no_relocation) {
  EXPECT_THAT(plugin.dynamic(DT_TEXTREL), IsEmpty());
  for (const std::uintptr_t flags : plugin.dynamic(DT_FLAGS)) EXPECT_FALSE(flags & DF_TEXTREL);
}

TEST_F(HardenedBinary, the_stack_is_not_executable) {
  const auto stack = plugin.segments(PT_GNU_STACK);
  ASSERT_EQ(stack.size(), 1u);  // without one, it would be
  EXPECT_FALSE(stack[0].p_flags & PF_X);
}

TEST_F(HardenedBinary, nothing_is_both_writable_and_executable) {
  const auto loaded = plugin.segments(PT_LOAD);
  EXPECT_THAT(loaded, ::testing::Not(IsEmpty()));
  for (const auto& segment : loaded) {
    EXPECT_NE(segment.p_flags & (PF_W | PF_X), unsigned{PF_W | PF_X}) << segment.p_vaddr;
  }
}

TEST_F(HardenedBinary, constants_are_not_executable) {
  int found = 0;
  for (const auto& section : plugin.sections()) {
    if (plugin.name(section) != ".rodata") continue;
    ++found;
    for (const auto& segment : plugin.segments(PT_LOAD)) {
      const bool holds_it =
          segment.p_vaddr <= section.sh_addr && section.sh_addr < segment.p_vaddr + segment.p_memsz;
      EXPECT_FALSE(holds_it && (segment.p_flags & PF_X) != 0);
    }
  }
  EXPECT_EQ(found, 1);
}

TEST_F(HardenedBinary, overrun_stack_frames_are_noticed) {
  std::vector<std::string> imported;
  for (const binary::Symbol& symbol : plugin.dynamic_symbols()) {
    if (!symbol.is_defined) imported.push_back(symbol.name);
  }
  EXPECT_THAT(imported, ::testing::Contains("__stack_chk_fail"));
}

// These two functions are the compiler's, and see to exception tables and to what ends with the
// library. A 64-bit plugin also gives the addresses back that it had reserved for nodes.
TEST_F(HardenedBinary, nothing_of_the_plugin_runs_when_it_is_loaded) {
  EXPECT_THAT(plugin.functions_in(".init_array"), ElementsAre("frame_dummy"));
  const std::vector<std::string> at_the_end = plugin.functions_in(".fini_array");
  EXPECT_THAT(at_the_end, ::testing::Contains("__do_global_dtors_aux"));
  EXPECT_EQ(at_the_end.size(), sizeof(void*) > sizeof(std::uint32_t) ? 2U : 1U);
  EXPECT_THAT(plugin.functions_in(".preinit_array"), IsEmpty());
}

// What depends on the folder makes two builds of the same sources differ.
TEST_F(HardenedBinary, it_does_not_tell_in_which_folder_it_was_built) {
  EXPECT_EQ(plugin.bytes().find(ZRB_SOURCE_FOLDER), std::string::npos);
}

TEST_F(HardenedBinary, it_carries_an_identity_of_its_content) {
  std::vector<std::string> names;
  for (const auto& section : plugin.sections()) names.push_back(plugin.name(section));
  EXPECT_THAT(names, ::testing::Contains(".note.gnu.build-id"));
}

}  // namespace
