#include "runtime/conversions.h"

#include <gtest/gtest.h>

#include "error_of.h"

namespace merivane::test {

using namespace runtime;

namespace {

TEST(WholeNumbers, RoundHalfToEvenWithinTheirWidth) {
  const std::pair<Value, int> cases[] = {{2.5, 2},
                                         {3.5, 4},
                                         {-2.5, -2},
                                         {-3.5, -4},
                                         {0.49999999999999994, 0},
                                         {32767.4999, 32767},
                                         {"-32768", -32768}};
  for (const auto& [value, expected] : cases) EXPECT_EQ(ToInt16(value), expected) << Joined(value);
  EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
  EXPECT_EQ(ToInt32("-2147483648"), -2147483647 - 1);
}

TEST(WholeNumbers, FailByTheReason) {
  const std::pair<Value, int> cases[] = {{32767.5, kOverflow},        {"-32769", kOverflow},
                                         {"1E400", kOverflow},        {"two", kTypeMismatch},
                                         {"", kTypeMismatch},         {Bytes{1}, kTypeMismatch},
                                         {Value(), kInvalidUseOfNull}};
  for (const auto& [value, number] : cases) {
    EXPECT_EQ(ErrorOf([&v = value] { ToInt16(v); }), number) << Joined(value);
  }
  EXPECT_EQ(ErrorOf([] { ToInt32(2147483647.5); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { AddInt16(32767, 1); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { ToText(Value()); }), kInvalidUseOfNull);
}

TEST(NumericTexts, AreThoseThatAUserWouldWrite) {
  const std::pair<const char*, double> numbers[] = {{" 7 ", 7},
                                                    {"+7", 7},
                                                    {"- 7", -7},
                                                    {"$-7", -7},
                                                    {"-$ 7", -7},
                                                    {"1,23,4", 1234},
                                                    {"5.", 5},
                                                    {".5", 0.5},
                                                    {"2e3", 2000},
                                                    {"2.5D+1", 25},
                                                    {"2E-400", 0},
                                                    {"0E999", 0},
                                                    {"1e-99999999999999999999", 0}};
  for (const auto& [text, expected] : numbers) {
    ASSERT_TRUE(IsNumericText(text)) << text;
    EXPECT_EQ(ToDouble(text), expected) << text;
  }
  for (const char* text :
       {"",    " ",    ".",   "-",   "$",    ",5",   "1.2.3", "1.2,3", "1e",  "3d",  "2e+",
        "--7", "-$-7", "$$7", "7 8", "&H1F", "0x10", "7-",    "(7)",   "inf", "nan", "7\t"}) {
    EXPECT_FALSE(IsNumericText(text)) << text;
  }
  EXPECT_TRUE(IsNumericText(std::string(400, '9')));
  EXPECT_FALSE(IsNumeric(Value()));
}

TEST(NumbersAsText, HaveFifteenDigitsAtMost) {
  const std::pair<double, const char*> cases[] = {{1.0 / 3, "0.333333333333333"},
                                                  {0.1 + 0.2, "0.3"},
                                                  {-0.0, "0"},
                                                  {1e15, "1E+15"},
                                                  {999999999999999, "999999999999999"},
                                                  {0.0001, "0.0001"},
                                                  {0.00001, "1E-05"},
                                                  {-1.5e-120, "-1.5E-120"}};
  for (const auto& [number, text] : cases) EXPECT_EQ(TextOfReal(number), text);
}

TEST(TwoDecimals, RoundTheWrittenNumberAwayFromZero) {
  const std::pair<double, const char*> cases[] = {{-2.345, "-2.35"},
                                                  {1.005, "1.01"},
                                                  {0.005, "0.01"},
                                                  {0.00499999, "0.00"},
                                                  {-0.004, "0.00"},
                                                  {0.05, "0.05"},
                                                  {9.995, "10.00"},
                                                  {7, "7.00"},
                                                  {0, "0.00"},
                                                  {1e16, "10000000000000000.00"},
                                                  {99999999999999.995, "100000000000000.00"}};
  for (const auto& [number, text] : cases) EXPECT_EQ(FixedTwo(number), text);
}

TEST(LeadingNumbers, EndWhereTheNumberEnds) {
  const std::pair<const char*, double> cases[] = {
      {"12FS+2d", 12}, {"  -3.5x", -3.5}, {"1.2.3", 1.2}, {"FS12", 0}, {"", 0}, {"-", 0}};
  for (const auto& [text, number] : cases) EXPECT_EQ(LeadingNumber(text), number) << text;
}

TEST(Comparison, TakesNumbersAsNumbersAndNullAsNothing) {
  EXPECT_TRUE(Equal(2, 2.0));
  EXPECT_TRUE(Equal("02", 2));
  EXPECT_FALSE(Equal("02", "2"));
  EXPECT_FALSE(Equal("two", 2));
  EXPECT_FALSE(Equal(Value(), Value()));
  EXPECT_FALSE(Equal("a", "A"));
  EXPECT_FALSE(Equal(std::int64_t{9007199254740993}, std::int64_t{9007199254740992}));
}

}  // namespace
}  // namespace merivane::test
