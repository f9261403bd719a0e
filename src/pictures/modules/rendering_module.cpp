// PNG and PDF by librsvg and cairo, as a module.
#include <cairo-pdf.h>
#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <memory>
#include <string>

#include "modules.h"

namespace merivane::pictures {

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

struct Failure {
  std::string why;
};

void Check(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) return;
  const bool large = status == CAIRO_STATUS_INVALID_SIZE || status == CAIRO_STATUS_NO_MEMORY;
  throw Failure{large ? "it is too large" : cairo_status_to_string(status)};
}

// Without one the letters would be missing, and nothing would tell.
void CheckFonts() {
  const FcFontSet* fonts = FcConfigGetFonts(nullptr, FcSetSystem);
  if (fonts == nullptr || fonts->nfont == 0) throw Failure{"no font is installed"};
}

cairo_status_t Append(void* bytes, const unsigned char* data, unsigned length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

void Draw(const Sheet& sheet, cairo_t* canvas) {
  const auto* data = reinterpret_cast<const guint8*>(sheet.svg.data());
  GInputStream* stream = g_memory_input_stream_new_from_data(data, std::ssize(sheet.svg), nullptr);
  GError* error = nullptr;
  const Handle handle(rsvg_handle_new_from_stream_sync(stream, nullptr, RSVG_HANDLE_FLAG_UNLIMITED,
                                                       nullptr, &error));
  g_object_unref(stream);
  const RsvgRectangle place{0, 0, sheet.width, sheet.height};
  if (!handle || rsvg_handle_render_document(handle.get(), canvas, &place, &error) == 0) {
    throw Failure{error != nullptr ? error->message : "its library gives no reason"};
  }
}

// What `render` gives, or nothing where it throws a failure.
template <typename Render>
std::string Rendered(std::string& failure, Render render) {
  try {
    CheckFonts();
    return render();
  } catch (const Failure& thrown) {
    failure = thrown.why;
    return {};
  }
}

std::string ToPng(const Sheet& sheet, std::string& failure) {
  return Rendered(failure, [&] {
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                                     std::max(1, static_cast<int>(sheet.width)),
                                                     std::max(1, static_cast<int>(sheet.height))));
    Check(cairo_surface_status(surface.get()));
    const Canvas canvas(cairo_create(surface.get()));
    Draw(sheet, canvas.get());
    std::string bytes;
    Check(cairo_surface_write_to_png_stream(surface.get(), Append, &bytes));
    return bytes;
  });
}

std::string ToPdf(const std::vector<Sheet>& pages, const std::string& title, std::string& failure) {
  return Rendered(failure, [&] {
    std::string bytes;
    const Surface surface(cairo_pdf_surface_create_for_stream(Append, &bytes, 1, 1));
    {
      const Canvas canvas(cairo_create(surface.get()));
      cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, title.c_str());
      for (const Sheet& page : pages) {
        cairo_pdf_surface_set_size(surface.get(), page.width, page.height);
        Draw(page, canvas.get());
        cairo_show_page(canvas.get());
      }
    }
    cairo_surface_finish(surface.get());
    Check(cairo_surface_status(surface.get()));
    return bytes;
  });
}

}  // namespace

}  // namespace merivane::pictures

using merivane::pictures::RenderingModule;

extern "C" {
extern const RenderingModule merivane_module;
const RenderingModule merivane_module{
    {MERIVANE_VERSION}, merivane::pictures::ToPng, merivane::pictures::ToPdf};
}
