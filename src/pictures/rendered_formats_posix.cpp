#include <cairo-pdf.h>
#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "pictures/svg.h"
#include "rendered_formats.h"
#include "runtime/child_process.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

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

using Render = Rendering (*)(const std::vector<Picture>&);

void Check(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) return;
  const bool large = status == CAIRO_STATUS_INVALID_SIZE || status == CAIRO_STATUS_NO_MEMORY;
  CanNotDraw(large ? "it is too large" : cairo_status_to_string(status));
}

// Without one the letters would be missing, and nothing would tell.
void CheckFonts() {
  const FcFontSet* fonts = FcConfigGetFonts(nullptr, FcSetSystem);
  if (fonts == nullptr || fonts->nfont == 0) CanNotDraw("no font is installed");
}

cairo_status_t Append(void* bytes, const unsigned char* data, unsigned length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

void Draw(const Picture& picture, cairo_t* canvas, double scale) {
  const std::string svg = ToSvgFile(picture);
  const auto* data = reinterpret_cast<const guint8*>(svg.data());
  GInputStream* stream = g_memory_input_stream_new_from_data(data, std::ssize(svg), nullptr);
  GError* error = nullptr;
  const Handle handle(rsvg_handle_new_from_stream_sync(stream, nullptr, RSVG_HANDLE_FLAG_UNLIMITED,
                                                       nullptr, &error));
  g_object_unref(stream);
  const RsvgRectangle place{0, 0, picture.width * scale, picture.height * scale};
  if (!handle || rsvg_handle_render_document(handle.get(), canvas, &place, &error) == 0) {
    CanNotDraw(error != nullptr ? FromUtf8(error->message) : "its library gives no reason");
  }
}

Rendering ToPng(const std::vector<Picture>& all) {
  const Picture picture = Stacked(all);
  const double scale = PngScale(picture);
  const Surface surface(cairo_image_surface_create(
      CAIRO_FORMAT_RGB24, std::max(1, static_cast<int>(picture.width * scale)),
      std::max(1, static_cast<int>(picture.height * scale))));
  Check(cairo_surface_status(surface.get()));
  const Canvas canvas(cairo_create(surface.get()));
  Draw(picture, canvas.get(), scale);
  std::string bytes;
  Check(cairo_surface_write_to_png_stream(surface.get(), Append, &bytes));
  return {.bytes = std::move(bytes), .factor = scale / kSharpness};
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
      Draw(picture, canvas.get(), scale);
      cairo_show_page(canvas.get());
    }
  }
  cairo_surface_finish(surface.get());
  Check(cairo_surface_status(surface.get()));
  return {.bytes = std::move(bytes), .factor = smallest / kPointsOfPixel};
}

// What comes through the pipe before the text.
struct Answer {
  std::uint64_t size = 0;
  double factor = 0;  // 0: the text tells a failure
};

void Send(int pipe, const std::string& text, double factor) {
  const Answer answer{.size = text.size(), .factor = factor};
  SendOrExit(pipe, &answer, sizeof answer);
  SendOrExit(pipe, text.data(), text.size());
}

// The libraries end their program where a thread can't be started or memory runs out.
Rendering Aside(Render render, const std::vector<Picture>& pictures) {
  constexpr std::chrono::minutes kLongest{5};
  const ForkedChild child([&](int pipe) {
    try {
      CheckFonts();
      const Rendering done = render(pictures);
      Send(pipe, done.bytes, done.factor);
    } catch (const RunTimeError& error) {
      Send(pipe, error.Description(), 0);
    }
  });
  const auto deadline = ForkedChild::Clock::now() + kLongest;
  const auto take = [&](void* data, std::size_t size) {
    if (child.Receive(data, size, deadline, [] {})) return;
    CanNotDraw(kGaveUp);
  };
  Answer answer;
  take(&answer, sizeof answer);
  std::string text(answer.size, '\0');
  take(text.data(), text.size());
  if (answer.factor == 0) throw RunTimeError(kDeviceIoError, text);
  return {.bytes = std::move(text), .factor = answer.factor};
}

Rendering PngAside(const std::vector<Picture>& pictures) { return Aside(ToPng, pictures); }

Rendering PdfAside(const std::vector<Picture>& pictures) { return Aside(ToPdf, pictures); }

}  // namespace

const std::vector<RenderedFormat>& RenderedFormats() {
  static const std::vector<RenderedFormat> formats{{".png", PngAside}, {".pdf", PdfAside}};
  return formats;
}

}  // namespace merivane::pictures
