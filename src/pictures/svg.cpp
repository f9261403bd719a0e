#include "pictures/svg.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string_view>

#include "pictures/style.h"
#include "text_lines.h"

namespace merivane::pictures {

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + value + '"';
}

enum class SvgKind { kFile, kElement };

class SvgWriter {
 public:
  SvgWriter(const Picture& picture, SvgKind kind)
      : picture_(picture), inPage_(kind == SvgKind::kElement) {}

  std::string Write() {
    std::string whole;
    Write([&whole](std::string_view piece) { whole += piece; });
    return whole;
  }

  void Write(const std::function<void(std::string_view piece)>& take) {
    constexpr std::size_t kPiece = 1 << 16;
    const std::string width = Number(picture_.width);
    const std::string height = Number(picture_.height);
    out_ += "<svg xmlns=\"http://www.w3.org/2000/svg\"" +
            (inPage_ ? Attribute("id", picture_.id + "-picture") : "") + Attribute("width", width) +
            Attribute("height", height) + Attribute("viewBox", "0 0 " + width + ' ' + height) +
            Attribute("role", inPage_ ? "group" : "img") + Attribute("font-family", kFonts) +
            (inPage_ ? Attribute("style", LeastWidth()) : "") + ">\n<title>" +
            Escaped(picture_.title) + "</title>\n<desc>" + Escaped(picture_.description) +
            "</desc>\n";
    if (!inPage_) out_ += "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    for (const Figure& figure : picture_.figures) {
      Add(figure);
      if (out_.size() < kPiece) continue;
      take(out_);
      out_.clear();
    }
    take(out_ + "</svg>\n");
  }

 private:
  // A page that is narrower scrolls.
  std::string LeastWidth() const {
    constexpr double kReadable = 0.6;
    return "min-width:" + Number(picture_.width * kReadable) + "px";
  }

  void Add(const Figure& figure) {
    faint_ = figure.faint;
    if (!figure.target.empty()) out_ += "<a href=\"#" + figure.target + "\">";
    out_ += "<g";
    if (!figure.id.empty()) {
      out_ += Attribute("id", inPage_ ? picture_.id + '-' + figure.id : figure.id);
    }
    if (faint_ && inPage_) out_ += " class=\"faint\"";
    out_ += '>';
    if (!figure.title.empty()) out_ += "<title>" + Escaped(figure.title) + "</title>";
    for (const Shape& shape : figure.shapes) {
      std::visit([this](const auto& part) { Add(part); }, shape);
    }
    out_ += figure.target.empty() ? "</g>\n" : "</g></a>\n";
  }

  void Add(const Box& box) {
    out_ += "<rect" + Attribute("x", Number(box.area.left)) + Attribute("y", Number(box.area.top)) +
            Attribute("width", Number(box.area.width)) +
            Attribute("height", Number(box.area.height));
    if (box.radius > 0) out_ += Attribute("rx", Number(box.radius));
    out_ += Paint(box.ink) + "/>";
  }

  void Add(const Path& path) {
    std::string steps;
    for (std::size_t at = 0; at < path.points.size(); ++at) {
      if (at == 0) {
        steps += 'M';
      } else if (!path.curved) {
        steps += 'L';
      } else {
        steps += at % 3 == 1 ? 'C' : ' ';
      }
      steps += Number(path.points[at].x) + ' ' + Number(path.points[at].y);
    }
    if (path.closed) steps += 'Z';
    out_ += "<path" + Attribute("d", steps) + Paint(path.ink) + "/>";
  }

  void Add(const Text& text) {
    out_ += "<text" + Attribute("x", Number(text.at.x)) + Attribute("y", Number(text.at.y));
    if (text.anchor == Anchor::kMiddle) out_ += Attribute("text-anchor", "middle");
    if (text.anchor == Anchor::kEnd) out_ += Attribute("text-anchor", "end");
    const Style& style = StyleOf(text.ink);
    out_ += Attribute("font-size", Number(style.size));
    if (style.bold) out_ += Attribute("font-weight", "bold");
    out_ += Paint(text.ink) + '>' + Escaped(text.text) + "</text>";
  }

  // Presentation attributes, which a page's classes overrule.
  std::string Paint(Ink ink) const {
    const Style style = faint_ ? FaintStyleOf(ink) : StyleOf(ink);
    std::string paint = Attribute("fill", style.fill);
    if (style.width > 0) {
      paint += Attribute("stroke", style.stroke) + Attribute("stroke-width", Number(style.width));
      if (*style.dash != '\0') paint += Attribute("stroke-dasharray", style.dash);
    }
    return inPage_ ? Attribute("class", style.name) + paint : paint;
  }

  const Picture& picture_;
  bool inPage_;
  bool faint_ = false;
  std::string out_;
};

std::string Showing(const Area& area) {
  return Attribute("width", Number(area.width)) + Attribute("height", Number(area.height)) +
         Attribute("viewBox", Number(area.left) + ' ' + Number(area.top) + ' ' +
                                  Number(area.width) + ' ' + Number(area.height)) +
         '>';
}

// A part of the picture beside and below what is frozen, which stands there with it.
std::string SheetOf(const Picture& picture, const Area& area) {
  const Point frozen = picture.frozen;
  std::string out = "<svg class=\"sheet\" aria-hidden=\"true\"" +
                    Showing({0, 0, frozen.x + area.width, frozen.y + area.height});
  const auto part = [&](double x, double y, const Area& of) {
    if (of.width <= 0 || of.height <= 0) return;
    out += "<svg" + Attribute("x", Number(x)) + Attribute("y", Number(y)) + Showing(of) +
           "<use href=\"#" + picture.id + "-picture\"/></svg>";
  };
  part(0, 0, {0, 0, frozen.x, frozen.y});
  part(frozen.x, 0, {area.left, 0, area.width, frozen.y});
  part(0, frozen.y, {0, area.top, frozen.x, area.height});
  part(frozen.x, frozen.y, area);
  return out + "</svg>\n";
}

}  // namespace

std::string ToSvgFile(const Picture& picture) {
  return kDeclaration + SvgWriter(picture, SvgKind::kFile).Write();
}

void ToSvgFile(const Picture& picture, const std::function<void(std::string_view piece)>& take) {
  take(kDeclaration);
  SvgWriter(picture, SvgKind::kFile).Write(take);
}

std::string ToSvgElement(const Picture& picture) {
  return SvgWriter(picture, SvgKind::kElement).Write();
}

std::string ToSvgSheets(const Picture& picture, double width, double height) {
  const Point frozen = picture.frozen;
  // Evenly, so that the last sheet is no sliver.
  const auto stepOf = [](double all, double room) {
    return all / std::max(1.0, std::ceil(all / std::max(1.0, room)));
  };
  const double stepX = stepOf(picture.width - frozen.x, width - frozen.x);
  const double stepY = stepOf(picture.height - frozen.y, height - frozen.y);
  constexpr double kRounding = 0.01;
  std::string out;
  for (double top = frozen.y; top < picture.height - kRounding; top += stepY) {
    for (double left = frozen.x; left < picture.width - kRounding; left += stepX) {
      out += SheetOf(picture, {left, top, std::min(stepX, picture.width - left),
                               std::min(stepY, picture.height - top)});
    }
  }
  return out;
}

}  // namespace merivane::pictures
