#include "read_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace merivane::test {

using namespace inspect;

namespace {

TEST(ReadLinesTest, EachLineComesBackAsItWasRead) {
  std::vector<std::string> read;
  for (const std::size_t length : {0U, 1U, 127U, 128U, 16383U, 16384U, 3'000'000U}) {
    for (const char letter : {'a', 'b', 'a'}) read.emplace_back(length, letter);
  }
  constexpr int kMoreThanAreRecent = 40'000;
  for (int number = 0; number < kMoreThanAreRecent; ++number) {
    read.push_back("line " + std::to_string(number));
    read.emplace_back("End  Property List");
  }
  read.emplace_back("line 0");
  ReadLines lines(0);
  for (const std::string& line : read) lines.Add(line);
  ASSERT_EQ(lines.Size(), read.size());
  for (std::size_t at = 0; at < read.size(); ++at) ASSERT_EQ(lines.At(at + 1), read[at]) << at;
}

}  // namespace
}  // namespace merivane::test
