// Values as bytes, on their way to a process of this same version and back. A type with parts that
// are no plain bytes tells them, of the value and of a constant one:
//   auto Fields(Is<Route> auto& route) { return std::tie(route.curve, route.tip); }
#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <variant>

#include "pictures/rendering.h"

namespace merivane::pictures {

template <typename Value, typename Type>
concept Is = std::same_as<std::remove_const_t<Value>, Type>;

class PackedWriter {
 public:
  template <typename Plain>
  void operator()(const Plain& value) {
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  template <typename Items>
  void Size(const Items& items) {
    (*this)(std::uint64_t{items.size()});
  }

  std::string bytes;
};

class PackedReader {
 public:
  explicit PackedReader(std::string_view bytes) : bytes_(bytes) {}

  template <typename Plain>
  void operator()(Plain& value) {
    if (bytes_.size() < sizeof value) BreaksOff();
    std::memcpy(&value, bytes_.data(), sizeof value);
    bytes_.remove_prefix(sizeof value);
  }
  // Each item takes a byte at least.
  template <typename Items>
  void Size(Items& items) {
    std::uint64_t size = 0;
    (*this)(size);
    if (size > bytes_.size()) BreaksOff();
    items.resize(size);
  }

 private:
  [[noreturn]] static void BreaksOff() { CanNotDraw("it came in another form"); }

  std::string_view bytes_;
};

template <typename Way, typename Value>
void Go(Way& way, Value& value);

template <typename Way, typename... Kinds>
void GoByKind(Way& way, std::variant<Kinds...>& value) {
  auto kind = static_cast<std::uint8_t>(value.index());
  way(kind);
  std::uint8_t at = 0;
  ((kind == at++ ? static_cast<void>(value = Kinds{}) : void()), ...);
}

template <typename Way, typename... Kinds>
void GoByKind(Way& way, const std::variant<Kinds...>& value) {
  way(static_cast<std::uint8_t>(value.index()));
}

// Both ways go over the same parts in the same order.
template <typename Way, typename Value>
void Go(Way& way, Value& value) {
  const auto each = [&way](auto&... parts) { (Go(way, parts), ...); };
  if constexpr (std::is_trivially_copyable_v<Value>) {
    way(value);
  } else if constexpr (requires { Fields(value); }) {
    std::apply(each, Fields(value));
  } else if constexpr (requires { value.index(); }) {
    GoByKind(way, value);
    std::visit(each, value);
  } else if constexpr (requires { value.has_value(); }) {
    bool is = value.has_value();
    way(is);
    if constexpr (!std::is_const_v<Value>) is ? static_cast<void>(value.emplace()) : value.reset();
    if (is) Go(way, *value);
  } else {
    way.Size(value);
    for (auto& item : value) Go(way, item);
  }
}

template <typename Value>
std::string PackedValue(const Value& value) {
  PackedWriter writer;
  Go(writer, value);
  return std::move(writer.bytes);
}

template <typename Value>
Value UnpackedValue(std::string_view bytes) {
  PackedReader reader(bytes);
  Value value;
  Go(reader, value);
  return value;
}

}  // namespace merivane::pictures
