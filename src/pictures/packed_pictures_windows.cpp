#include <cstdint>
#include <cstring>
#include <type_traits>
#include <variant>

#include "pictures/packed_pictures.h"

namespace merivane::pictures {

namespace {

class Writer {
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

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

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
  [[noreturn]] static void BreaksOff() { CanNotDraw("it came in another form"); }

 private:
  std::string_view bytes_;
};

Shape ShapeOfKind(std::uint8_t kind) {
  if (kind == Shape(Box{}).index()) return Box{};
  if (kind == Shape(Path{}).index()) return Path{};
  if (kind == Shape(Text{}).index()) return Text{};
  Reader::BreaksOff();
}

// Both go over the same fields in the same order.
template <typename Way, typename Value>
void Go(Way& way, Value& value) {
  using Plain = std::remove_const_t<Value>;
  const auto each = [&way](auto&... fields) { (Go(way, fields), ...); };
  if constexpr (std::is_trivially_copyable_v<Plain>) {
    way(value);
  } else if constexpr (std::is_same_v<Plain, Shape>) {
    auto kind = static_cast<std::uint8_t>(value.index());
    way(kind);
    if constexpr (!std::is_const_v<Value>) value = ShapeOfKind(kind);
    std::visit(each, value);
  } else if constexpr (std::is_same_v<Plain, Path>) {
    each(value.ink, value.points, value.curved, value.closed);
  } else if constexpr (std::is_same_v<Plain, Text>) {
    each(value.ink, value.at, value.text, value.anchor);
  } else if constexpr (std::is_same_v<Plain, Figure>) {
    each(value.id, value.title, value.target, value.faint, value.area, value.shapes);
  } else if constexpr (std::is_same_v<Plain, Picture>) {
    each(value.id, value.title, value.description, value.width, value.height, value.figures,
         value.frozen);
  } else if constexpr (std::is_same_v<Plain, Rendering>) {
    each(value.bytes, value.factor);
  } else {
    way.Size(value);
    for (auto& item : value) Go(way, item);
  }
}

template <typename Value>
std::string Write(const Value& value) {
  Writer writer;
  Go(writer, value);
  return std::move(writer.bytes);
}

template <typename Value>
Value Read(std::string_view bytes) {
  Reader reader(bytes);
  Value value;
  Go(reader, value);
  return value;
}

}  // namespace

std::string Packed(const std::vector<Picture>& pictures) { return Write(pictures); }

std::vector<Picture> UnpackedPictures(std::string_view bytes) {
  return Read<std::vector<Picture>>(bytes);
}

std::string Packed(const Rendering& rendering) { return Write(rendering); }

Rendering UnpackedRendering(std::string_view bytes) { return Read<Rendering>(bytes); }

}  // namespace merivane::pictures
