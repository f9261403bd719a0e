#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>

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

const RenderingModule& OpenRendering() try {
  return static_cast<const RenderingModule&>(OpenModule(kRenderingModule));
} catch (const RunTimeError& error) {
  CanNotDraw(error.Description());
}

// The libraries end their program where a thread can't be started or memory runs out.
Rendering Aside(Render render, const std::vector<Picture>& pictures) {
  constexpr std::chrono::minutes kLongest{5};
  const ForkedChild child([&](int pipe) {
    try {
      const Rendering done = render(OpenRendering(), pictures);
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
