#include <cairo-pdf.h>
#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "pictures/svg.h"
#include "rendered_formats.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

constexpr double kSharpness = 2;          // dots of a PNG for each pixel
constexpr double kMostDots = 60'000'000;  // of a PNG in all
constexpr double kMostSide = 32'000;      // dots
constexpr double kMostPage = 14'400;      // points of a PDF's side
constexpr double kPointsOfPixel = 0.75;

template <auto Free>
struct FreeWith {
  template <typename Object>
  void operator()(Object* object) const {
    Free(object);
  }
};
using Surface = std::unique_ptr<cairo_surface_t, FreeWith<cairo_surface_destroy>>;
using Canvas = std::unique_ptr<cairo_t, FreeWith<cairo_destroy>>;
using Handle = std::unique_ptr<RsvgHandle, FreeWith<g_object_unref>>;

[[noreturn]] void CanNotDraw() {
  throw RunTimeError(kDeviceIoError, "the picture can't be drawn: it is too large");
}

cairo_status_t Append(void* bytes, const unsigned char* data, unsigned length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

void Render(const Picture& picture, cairo_t* canvas, double scale) {
  const std::string svg = ToSvgFile(picture);
  const auto* data = reinterpret_cast<const guint8*>(svg.data());
  GInputStream* stream = g_memory_input_stream_new_from_data(data, std::ssize(svg), nullptr);
  const Handle handle(rsvg_handle_new_from_stream_sync(stream, nullptr, RSVG_HANDLE_FLAG_UNLIMITED,
                                                       nullptr, nullptr));
  g_object_unref(stream);
  const RsvgRectangle place{0, 0, picture.width * scale, picture.height * scale};
  if (!handle || rsvg_handle_render_document(handle.get(), canvas, &place, nullptr) == 0) {
    CanNotDraw();
  }
}

double PngScale(const Picture& picture) {
  return std::min({kSharpness, std::sqrt(kMostDots / (picture.width * picture.height)),
                   kMostSide / picture.width, kMostSide / picture.height});
}

Rendering ToPng(const std::vector<Picture>& all) {
  const Picture picture = Stacked(all);
  const double scale = PngScale(picture);
  const Surface surface(cairo_image_surface_create(
      CAIRO_FORMAT_RGB24, std::max(1, static_cast<int>(picture.width * scale)),
      std::max(1, static_cast<int>(picture.height * scale))));
  const Canvas canvas(cairo_create(surface.get()));
  Render(picture, canvas.get(), scale);
  std::string bytes;
  if (cairo_surface_write_to_png_stream(surface.get(), Append, &bytes) != CAIRO_STATUS_SUCCESS) {
    CanNotDraw();
  }
  return {.bytes = std::move(bytes), .factor = scale / kSharpness};
}

double PdfScale(const Picture& picture) {
  return std::min(kPointsOfPixel, kMostPage / std::max(picture.width, picture.height));
}

Rendering ToPdf(const std::vector<Picture>& pictures) {
  std::string bytes;
  double smallest = kPointsOfPixel;
  const Surface surface(cairo_pdf_surface_create_for_stream(Append, &bytes, 1, 1));
  {
    const Canvas canvas(cairo_create(surface.get()));
    const std::string title = ToUtf8(pictures.front().title);
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, title.c_str());
    for (const Picture& picture : pictures) {
      const double scale = PdfScale(picture);
      smallest = std::min(smallest, scale);
      cairo_pdf_surface_set_size(surface.get(), picture.width * scale, picture.height * scale);
      Render(picture, canvas.get(), scale);
      cairo_show_page(canvas.get());
    }
  }
  cairo_surface_finish(surface.get());
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) CanNotDraw();
  return {.bytes = std::move(bytes), .factor = smallest / kPointsOfPixel};
}

}  // namespace

const std::vector<RenderedFormat>& RenderedFormats() {
  static const std::vector<RenderedFormat> formats{{".png", ToPng}, {".pdf", ToPdf}};
  return formats;
}

}  // namespace merivane::pictures
