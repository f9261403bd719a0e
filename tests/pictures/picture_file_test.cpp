#include "pictures/picture_file.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "environment.h"
#include "error_of.h"
#include "runtime/run_time_error.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace runtime;
using namespace pictures;

namespace {

using ::testing::ElementsAre;

namespace fs = std::filesystem;

Picture Drawing(double width) {
  Picture picture;
  picture.width = width;
  picture.height = 40;
  Figure figure;
  figure.shapes.push_back(Text{Ink::kTitle, {4, 30}, "\xc4gypten"});
  picture.figures.push_back(std::move(figure));
  return picture;
}

// Whether pictures can be rendered: on Windows only beside the desktop program.
bool IsRendering() { return PictureEndings().size() > 1; }

// Width and height of a PNG, as its head tells them.
std::pair<unsigned, unsigned> DotsOf(const std::string& png) {
  const auto number = [&png](std::size_t at) {
    unsigned value = 0;
    for (const char byte : png.substr(at, 4))
      value = value << 8U | static_cast<unsigned char>(byte);
    return value;
  };
  return {number(16), number(20)};
}

TEST(PictureFileTest, TheEndingTellsTheKind) {
  const TemporaryFolder folder;
  const std::pair<const char*, std::string> rows[] = {
      {"a.SVG", "<?xml"}, {"\xc3\xa4.png", "\x89PNG"}, {"a.pdf", "%PDF"}};
  for (const auto& [name, begin] : rows) {
    if (!IsRendering() && begin != "<?xml") continue;
    ASSERT_TRUE(IsPictureName(name)) << name;
    const std::string path = folder.Write(name, "old");
    EXPECT_EQ(WritePictures({Drawing(100), Drawing(50)}, path), 1) << name;
    EXPECT_TRUE(ReadFile(path).starts_with(begin)) << name;
  }
  EXPECT_FALSE(IsPictureName("svg"));
}

// Width and height of each page of a PDF, in points.
std::vector<std::pair<double, double>> PagesOf(const std::string& pdf) {
  static constexpr std::string_view kBox = "/MediaBox [";
  std::vector<std::pair<double, double>> pages;
  for (std::size_t at = pdf.find(kBox); at != std::string::npos; at = pdf.find(kBox, at + 1)) {
    std::istringstream numbers(pdf.substr(at + kBox.size(), 80));
    double left = 0, top = 0, width = 0, height = 0;
    numbers >> left >> top >> width >> height;
    pages.emplace_back(width, height);
  }
  return pages;
}

TEST(PictureFileTest, DotsAndPagesAreAsLargeAsThePictures) {
  if (!IsRendering()) GTEST_SKIP() << "nothing renders here";
  const TemporaryFolder folder;
  const std::string png = folder.Path("a.png");
  const std::string pdf = folder.Path("a.pdf");
  WritePictures({Drawing(100), Drawing(48)}, png);
  EXPECT_EQ(DotsOf(ReadFile(png)), std::pair(200U, 2 * (40U + 6U + 40U)));
  WritePictures({Drawing(100), Drawing(48)}, pdf);
  EXPECT_THAT(PagesOf(ReadFile(pdf)), ElementsAre(std::pair(75, 30), std::pair(36, 30)));
  EXPECT_LT(WritePictures({Drawing(400'000)}, png), 0.1);
  EXPECT_LT(DotsOf(ReadFile(png)).first, 32'768U);
  EXPECT_LT(WritePictures({Drawing(400'000)}, pdf), 0.1);
}

TEST(PictureFileTest, APlaceThatRefusesIsTold) {
  const TemporaryFolder folder;
  fs::create_directories(folder.Path("a.svg"));
  for (const char* name : {"a.svg", "none/a.svg"}) {
    EXPECT_THROW(WritePictures({Drawing(10)}, folder.Path(name)), RunTimeError) << name;
  }
}

#ifndef _WIN32
TEST(PictureFileTest, AFailureIsToldAsWhatItIs) {
  const TemporaryFolder folder;
  const std::pair<std::string, std::string> rows[] = {
      {folder.Path("none/a.svg"), "Path not found"},
      {"/dev/full", "Disk full"},
      // Nothing of this process lies where its memory begins.
      {"/proc/self/mem", "Device I/O error"}};
  for (const auto& row : rows) {
    std::string told;
    EXPECT_NE(ErrorOf([&] { WritePictures({Drawing(10)}, {"a.svg", row.first}); }, &told), 0);
    EXPECT_EQ(told, row.second + ": 'a.svg'");
    const std::string bytes(100'000, 'x');
    EXPECT_NE(ErrorOf([&] { WriteOutput({"a.csv", row.first}, bytes); }, &told), 0);
    EXPECT_EQ(told, row.second + ": 'a.csv'");
  }
}

TEST(PictureFileTest, WhatCannotBeRenderedIsToldAndTheFileStays) {
  const TemporaryFolder folder;
  const EnvironmentVariable fonts("FONTCONFIG_FILE");
  fonts.Set(folder.Write("fonts.conf", "<fontconfig/>"));
  for (const char* name : {"a.png", "a.pdf"}) {
    const std::string path = folder.Write(name, "old");
    std::string told;
    EXPECT_EQ(ErrorOf([&] { WritePictures({Drawing(10)}, path); }, &told), kDeviceIoError);
    EXPECT_EQ(told, "the picture can't be drawn: no font is installed");
    EXPECT_EQ(ReadFile(path), "old");
  }
}
#endif

}  // namespace
}  // namespace merivane::test
