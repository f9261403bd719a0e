#include "pictures/picture_file.h"

#include <algorithm>
#include <fstream>

#include "pictures/svg.h"
#include "rendered_formats.h"
#include "runtime/code_page.h"
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

double WritePictures(const std::vector<Picture>& pictures, const std::string& path) {
  for (const RenderedFormat& format : RenderedFormats()) {
    if (!EndsWith(path, format.ending)) continue;
    const Rendering rendering = format.render(pictures);
    WriteFile(path, rendering.bytes);
    return rendering.factor;
  }
  WriteFile(path, ToSvgFile(Stacked(pictures)));
  return 1;
}

void WriteFile(const std::string& path, std::string_view bytes) {
  const auto fail = [&](int number) {
    throw RunTimeError(number, ErrorText(number) + ": '" + FromUtf8(path) + "'");
  };
  std::ofstream file(PathOf(path), std::ios::binary);
  if (!file) fail(kPermissionDenied);
  file.write(bytes.data(), std::ssize(bytes));
  file.close();
  if (!file) fail(kDiskFull);
}

}  // namespace merivane::pictures
