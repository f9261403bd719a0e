#include "pictures/picture_file.h"

#include <algorithm>
#include <utility>

#include "pictures/svg.h"
#include "rendered_formats.h"
#include "runtime/file_names.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

bool EndsWith(const std::string& path, const std::string& ending) {
  return UpperCase(Utf8Of(PathOf(path).extension())) == UpperCase(ending);
}

}  // namespace

std::vector<std::string> PictureEndings() {
  std::vector<std::string> endings{".svg"};
  for (const RenderedFormat& format : RenderedFormats()) endings.emplace_back(format.ending);
  return endings;
}

std::string PictureEndingWords() {
  const std::vector<std::string> endings = PictureEndings();
  std::string words;
  for (const std::string& ending : endings) {
    if (!words.empty()) words += &ending == &endings.back() ? " or " : ", ";
    words += ending;
  }
  return words;
}

bool IsPictureName(const std::string& path) {
  const std::vector<std::string> endings = PictureEndings();
  return std::any_of(endings.begin(), endings.end(),
                     [&](const std::string& ending) { return EndsWith(path, ending); });
}

double WritePictures(std::vector<Picture> pictures, const Output& output) {
  for (const RenderedFormat& format : RenderedFormats()) {
    if (!EndsWith(output.path, format.ending)) continue;
    const Rendering rendering = format.render(pictures);
    WriteOutput(output, rendering.bytes);
    return rendering.factor;
  }
  const Picture whole = Stacked(std::move(pictures));
  OutputFile file(output);
  ToSvgFile(whole, [&file](std::string_view piece) { file.Write(piece); });
  file.Close();
  return 1;
}

}  // namespace merivane::pictures
