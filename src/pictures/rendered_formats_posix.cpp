#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "modules.h"
#include "pictures/svg.h"
#include "rendered_formats.h"
#include "runtime/child_process.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

using Render = Rendering (*)(const RenderingModule& module, const std::vector<Picture>& pictures);

Sheet SheetOf(const Picture& picture, double scale) {
  return {
      .svg = ToSvgFile(picture), .width = picture.width * scale, .height = picture.height * scale};
}

void Check(const std::string& failure) {
  if (!failure.empty()) CanNotDraw(FromUtf8(failure));
}

Rendering ToPng(const RenderingModule& module, const std::vector<Picture>& all) {
  const Picture picture = Stacked(all);
  const double scale = PngScale(picture);
  std::string failure;
  std::string bytes = module.toPng(SheetOf(picture, scale), failure);
  Check(failure);
  return {.bytes = std::move(bytes), .factor = scale / kSharpness};
}

Rendering ToPdf(const RenderingModule& module, const std::vector<Picture>& pictures) {
  double smallest = kPointsOfPixel;
  std::vector<Sheet> pages;
  for (const Picture& picture : pictures) {
    const double scale = PdfScale(picture);
    smallest = std::min(smallest, scale);
    pages.push_back(SheetOf(picture, scale));
  }
  std::string failure;
  std::string bytes = module.toPdf(pages, ToUtf8(pictures.front().title), failure);
  Check(failure);
  return {.bytes = std::move(bytes), .factor = smallest / kPointsOfPixel};
}

const RenderingModule& OpenRendering() try {
  return static_cast<const RenderingModule&>(OpenModule(kRenderingModule));
} catch (const RunTimeError& error) {
  CanNotDraw(error.Description());
}

// The libraries end their program where a thread can't be started or memory runs out.
Rendering Aside(Render render, const std::vector<Picture>& pictures) {
  const auto draw = [&](int pipe) {
    const auto send = [pipe](const std::string& bytes, double factor) {  // 0: a failure
      SendOrExit(pipe, &factor, sizeof factor);
      SendOrExit(pipe, bytes.data(), bytes.size());
    };
    try {
      const Rendering done = render(OpenRendering(), pictures);
      send(done.bytes, done.factor);
    } catch (const RunTimeError& error) {
      send(error.Description(), 0);
    }
  };
  const ForkedChild child(draw, {.memoryBytes = kRenderingMemory});
  const auto deadline = ForkedChild::Clock::now() + kLongestRendering;
  Rendering rendering;
  if (!child.Receive(&rendering.factor, sizeof rendering.factor, deadline, [] {})) {
    CanNotDraw(kGaveUp);
  }
  std::optional<std::string> bytes = child.ReceiveAll(deadline, [] {});
  if (!bytes) CanNotDraw(kGaveUp);
  if (rendering.factor == 0) throw RunTimeError(kDeviceIoError, *bytes);
  rendering.bytes = *std::move(bytes);
  return rendering;
}

Rendering PngAside(const std::vector<Picture>& pictures) { return Aside(ToPng, pictures); }

Rendering PdfAside(const std::vector<Picture>& pictures) { return Aside(ToPdf, pictures); }

}  // namespace

const std::vector<RenderedFormat>& RenderedFormats() {
  static const std::vector<RenderedFormat> formats{{".png", PngAside}, {".pdf", PdfAside}};
  return formats;
}

}  // namespace merivane::pictures
