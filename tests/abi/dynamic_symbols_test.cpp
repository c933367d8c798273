// What the plugin's binary shows to the dynamic linker, and what it asks of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "elf_file.h"

namespace {

using binary::ElfFile;
using binary::Symbol;

// Opening the file tells as well that it has this build's width.
const ElfFile& plugin() {
  static const ElfFile file(ZRB_PLUGIN_PATH);
  return file;
}

bool is_sanitized() {
#ifdef __SANITIZE_ADDRESS__
  return true;
#else
  return false;
#endif
}

TEST(DynamicSymbols, exactly_the_two_entries_are_exported_and_are_functions) {
  std::vector<std::string> exported;
  for (const Symbol& symbol : plugin().dynamic_symbols()) {
    if (!symbol.is_defined) continue;
    exported.push_back(symbol.name);
    EXPECT_EQ(symbol.type, STT_FUNC) << symbol.name;
  }
  EXPECT_THAT(exported, ::testing::UnorderedElementsAre("REALPluginMain", "PluginEntry"));
}

TEST(DynamicSymbols, nothing_but_the_c_and_cpp_runtime_is_needed) {
  const std::vector<std::string> needed = plugin().dynamic_names(DT_NEEDED);
  EXPECT_THAT(needed, ::testing::IsSupersetOf({"libstdc++.so.6", "libc.so.6"}));
  std::set<std::string> known = {"libstdc++.so.6", "libgcc_s.so.1", "libc.so.6"};
  if (is_sanitized()) known.insert({"libasan.so.8", "libubsan.so.1", "libm.so.6"});
  for (const std::string& library : needed) EXPECT_THAT(known, ::testing::Contains(library));
}

TEST(DynamicSymbols, no_folder_is_named_in_which_libraries_are_looked_for) {
  EXPECT_THAT(plugin().dynamic(DT_RPATH), ::testing::IsEmpty());
  EXPECT_THAT(plugin().dynamic(DT_RUNPATH), ::testing::IsEmpty());
}

// A short list is what keeps out streams, files, threads, environment, clocks and further
// libraries: whatever is new here should be looked at twice.
TEST(DynamicSymbols, only_memory_exceptions_and_start_up_are_asked_of_the_runtime) {
  if (is_sanitized()) GTEST_SKIP() << "a sanitizer's build calls its runtime everywhere";
  std::set<std::string> known = {
      // the compiler's own start-up code
      "_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable", "__gmon_start__",
      "__cxa_finalize",
      // bytes
      "memcpy", "memmove", "memset", "memchr", "memcmp", "strlen", "strncmp",
      // the heap; operator new and delete for either width of size_t
      "malloc", "calloc", "free", "_Znwm", "_Znam", "_Znwj", "_Znaj", "_ZdlPv", "_ZdaPv", "_ZdlPvm",
      "_ZdlPvj",
      // exceptions, std::bad_alloc, std::uncaught_exceptions, std::terminate
      "_Unwind_Resume", "__gxx_personality_v0", "__cxa_allocate_exception", "__cxa_free_exception",
      "__cxa_throw", "__cxa_rethrow", "__cxa_begin_catch", "__cxa_end_catch",
      "__cxa_throw_bad_array_new_length", "_ZNSt9bad_allocD1Ev", "_ZTISt9bad_alloc",
      "_ZTVSt9bad_alloc", "_ZSt19uncaught_exceptionsv", "_ZSt9terminatev",
      // the pages of large arrays
      "madvise",
      // arithmetic that a 32-bit processor lacks
      "__udivdi3", "__umoddi3",
      // the stack protector
      "__stack_chk_fail"};
  // a 64-bit process: the region of addresses that nodes come from, and the lock on it
  if (sizeof(void*) > sizeof(std::uint32_t)) {
    known.insert({"mmap", "mprotect", "munmap", "pthread_mutex_lock", "pthread_mutex_unlock",
                  "_ZSt20__throw_system_errori"});
  }
  for (const Symbol& symbol : plugin().dynamic_symbols()) {
    if (symbol.is_defined) continue;
    EXPECT_THAT(known, ::testing::Contains(symbol.name));
  }
}

}  // namespace
