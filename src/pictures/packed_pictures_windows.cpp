#include "packing.h"
#include "pictures/packed_pictures.h"

namespace merivane::pictures {

auto Fields(Is<Path> auto& path) {
  return std::tie(path.ink, path.points, path.curved, path.closed);
}

auto Fields(Is<Text> auto& text) { return std::tie(text.ink, text.at, text.text, text.anchor); }

auto Fields(Is<Figure> auto& figure) {
  return std::tie(figure.id, figure.title, figure.target, figure.faint, figure.area, figure.shapes);
}

auto Fields(Is<Picture> auto& picture) {
  return std::tie(picture.id, picture.title, picture.description, picture.width, picture.height,
                  picture.figures, picture.frozen);
}

auto Fields(Is<Rendering> auto& rendering) { return std::tie(rendering.bytes, rendering.factor); }

std::string Packed(const std::vector<Picture>& pictures) { return PackedValue(pictures); }

std::vector<Picture> UnpackedPictures(std::string_view bytes) {
  return UnpackedValue<std::vector<Picture>>(bytes);
}

std::string Packed(const Rendering& rendering) { return PackedValue(rendering); }

Rendering UnpackedRendering(std::string_view bytes) { return UnpackedValue<Rendering>(bytes); }

}  // namespace merivane::pictures
