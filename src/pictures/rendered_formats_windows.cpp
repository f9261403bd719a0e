#include <string>

#include "pictures/packed_pictures.h"
#include "rendered_formats.h"
#include "runtime/helper_process.h"
#include "runtime/run_time_error.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

constexpr const char* kProgram = "merivane.exe";

Rendering Aside(const char* ending, const std::vector<Picture>& pictures) {
  const HelperProcess renderer(kProgram, {kRenderWord, ending}, {.memory = kRenderingMemory},
                               Packed(pictures));
  if (!renderer.HasStarted()) throw RunTimeError(kDeviceIoError, "a process can't be started");
  if (!renderer.HasEnded(kLongestRendering)) CanNotDraw(kGaveUp);
  const std::string answer = renderer.Output();
  if (!renderer.HasSucceeded()) {
    if (answer.empty()) CanNotDraw(kGaveUp);
    throw RunTimeError(kDeviceIoError, answer);
  }
  return UnpackedRendering(answer);
}

}  // namespace

const std::vector<RenderedFormat>& RenderedFormats() {
  static const std::vector<RenderedFormat> formats =
      HelperProcess::IsThere(kProgram)
          ? std::vector<RenderedFormat>{{".png",
                                         [](const auto& all) { return Aside(".png", all); }},
                                        {".pdf",
                                         [](const auto& all) { return Aside(".pdf", all); }}}
          : std::vector<RenderedFormat>{};
  return formats;
}

}  // namespace merivane::pictures
