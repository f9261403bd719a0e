#include "runtime/csv.h"

#include <gtest/gtest.h>

namespace merivane::test {

using namespace runtime;

namespace {

TEST(Csv, CellsAreQuotedAndNoFormulas) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"Cut", "Cut"},
      {"Cut, sand", "\"Cut, sand\""},
      {"the \"big\" one", "\"the \"\"big\"\" one\""},
      {"two\r\nlines", "\"two\r\nlines\""},
      {"=1+1", "'=1+1"},
      {"@SUM(A1)", "'@SUM(A1)"},
      {"+49 30 1234", "'+49 30 1234"},
      {"-2+3", "'-2+3"},
      {"-2.50", "-2.50"},
      {"=HYPERLINK(\"a\",\"b\")", "\"'=HYPERLINK(\"\"a\"\",\"\"b\"\")\""},
      {"\t=1", "'\t=1"},
  };
  for (const auto& [text, cell] : cases) EXPECT_EQ(CsvCell(text), cell) << text;
  EXPECT_EQ(CsvLine({"", "a", ""}), ",a,\r\n");
}

}  // namespace
}  // namespace merivane::test
