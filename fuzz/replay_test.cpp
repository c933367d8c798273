// Runs a target on each file of its committed corpus.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "targets.h"

namespace {

std::vector<std::string> files() {
  std::vector<std::string> result;
  for (const auto& file : std::filesystem::directory_iterator(ZRB_CORPUS)) {
    result.push_back(file.path().filename().string());
  }
  std::sort(result.begin(), result.end());
  return result;
}

class Corpus : public ::testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(, Corpus, ::testing::ValuesIn(files()), [](const auto& file) {
  std::string name = file.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
});

TEST_P(Corpus, has_no_finding) {
  std::ifstream in(std::string(ZRB_CORPUS "/") + GetParam(), std::ios::binary);
  ASSERT_TRUE(in);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  EXPECT_EQ(
      fuzz::ZRB_FUZZ_TARGET({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}), "");
}

}  // namespace
