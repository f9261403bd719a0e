// Conversions between texts, numbers and values, with the failures of the language run time:
// error 6 "Overflow", 13 "Type mismatch", 94 "Invalid use of Null" (all as RunTimeError).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "runtime/value.h"

namespace merivane::runtime {

// Whole numbers round half to even. Text must satisfy IsNumeric, else error 13; Null is error 94;
// a result beyond the width is error 6.
std::int16_t ToInt16(const Value& value);
std::int32_t ToInt32(const Value& value);
double ToDouble(const Value& value);

// Text of a value; Null is error 94 (ToText) or empty text (Joined, as when texts are joined).
// Reals print with up to 15 significant digits, "1E-05" and "1E+15" beyond the plain range.
std::string ToText(const Value& value);
std::string Joined(const Value& value);
std::string TextOfReal(double number);

// True for a text that reads as a number: sign, blanks around, grouping commas, a currency sign,
// an exponent behind E or D. Null and empty text are not numeric; numbers are.
bool IsNumeric(const Value& value);
bool IsNumericText(std::string_view text);

// The number at the front of a text: leading blanks, sign, digits, a fraction; 0 without one.
double LeadingNumber(std::string_view text);

// Exactly two decimals, halves away from zero, judged on the number's text of 15 digits.
std::string FixedTwo(double number);

// a + b in 16 bits; error 6 beyond.
std::int16_t AddInt16(std::int16_t a, int b);

// True when both values compare as equal: numbers as numbers, texts byte by byte. A number and a
// text compare as numbers where the text is numeric and differ otherwise. Null equals nothing.
bool Equal(const Value& a, const Value& b);

// Null or empty text.
bool IsBlank(const Value& value);

}  // namespace merivane::runtime
