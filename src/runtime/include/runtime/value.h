// The value that passes between program, database and text: Null or one of four kinds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace merivane::runtime {

using Bytes = std::vector<std::uint8_t>;

// Text is Windows-1252, one byte a character (see code_page.h for the two edges where it is not).
// A default-made Value is Null; a field variable that nothing has assigned yet is Null too.
class Value {
 public:
  Value() = default;
  Value(int number) : data_(static_cast<std::int64_t>(number)) {}
  Value(std::int16_t number) : data_(static_cast<std::int64_t>(number)) {}
  Value(std::int64_t number) : data_(number) {}
  Value(double number) : data_(number) {}
  Value(std::string text) : data_(std::move(text)) {}
  Value(std::string_view text) : data_(std::string(text)) {}
  Value(const char* text) : data_(std::string(text)) {}
  Value(Bytes bytes) : data_(std::move(bytes)) {}
  Value(bool) = delete;  // a flag in a column is 1, 0 or -1: say which

  // Made around the copied content: a variant of GCC 12 whose own copy fails ends the program.
  Value(const Value& other)
      : data_(std::visit([](const auto& content) { return Data(content); }, other.data_)) {}
  Value& operator=(const Value& other) {
    if (this != &other) *this = Value(other);
    return *this;
  }
  Value(Value&&) noexcept = default;
  Value& operator=(Value&&) noexcept = default;
  ~Value() = default;

  bool IsNull() const { return std::holds_alternative<std::monostate>(data_); }
  bool IsInteger() const { return std::holds_alternative<std::int64_t>(data_); }
  bool IsReal() const { return std::holds_alternative<double>(data_); }
  bool IsText() const { return std::holds_alternative<std::string>(data_); }
  bool IsBytes() const { return std::holds_alternative<Bytes>(data_); }

  // REQUIRES: the value is of that kind.
  std::int64_t Integer() const { return std::get<std::int64_t>(data_); }
  double Real() const { return std::get<double>(data_); }
  const std::string& Text() const { return std::get<std::string>(data_); }
  const Bytes& GetBytes() const { return std::get<Bytes>(data_); }

  // Same kind and same content; Null equals Null. Comparisons by the rules of the run time are in
  // conversions.h.
  friend bool operator==(const Value&, const Value&) = default;

 private:
  using Data = std::variant<std::monostate, std::int64_t, double, std::string, Bytes>;
  Data data_;
};

}  // namespace merivane::runtime
