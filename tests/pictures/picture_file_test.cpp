#include "pictures/picture_file.h"

#include <cstdlib>

#include "error_of.h"
#include "runtime/run_time_error.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace runtime;
using namespace pictures;

namespace {

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

TEST(PictureFileTest, TheEndingTellsTheKind) {
  const TemporaryFolder folder;
  struct Row {
    const char* name;
    std::string begin;
  };
  for (const Row& row :
       {Row{"a.SVG", "<?xml"}, Row{"\xc3\xa4.png", "\x89PNG"}, Row{"a.pdf", "%PDF"}}) {
#ifdef _WIN32
    if (row.begin != "<?xml") continue;
#endif
    ASSERT_TRUE(IsPictureName(row.name)) << row.name;
    const std::string path = folder.Write(row.name, "old");
    EXPECT_EQ(WritePictures({Drawing(100), Drawing(50)}, path), 1) << row.name;
    EXPECT_TRUE(ReadFile(path).starts_with(row.begin)) << row.name;
  }
  EXPECT_FALSE(IsPictureName("svg"));
#ifndef _WIN32
  EXPECT_LT(WritePictures({Drawing(400'000)}, folder.Path("wide.png")), 0.1);
#endif
}

TEST(PictureFileTest, APlaceThatRefusesIsTold) {
  const TemporaryFolder folder;
  fs::create_directories(folder.Path("a.svg"));
  for (const char* name : {"a.svg", "none/a.svg"}) {
    EXPECT_THROW(WritePictures({Drawing(10)}, folder.Path(name)), RunTimeError) << name;
  }
}

#ifndef _WIN32
TEST(PictureFileTest, WhatCannotBeRenderedIsToldAndTheFileStays) {
  const TemporaryFolder folder;
  setenv("FONTCONFIG_FILE", folder.Write("fonts.conf", "<fontconfig/>").c_str(), 1);
  for (const char* name : {"a.png", "a.pdf"}) {
    const std::string path = folder.Write(name, "old");
    std::string told;
    EXPECT_EQ(ErrorOf([&] { WritePictures({Drawing(10)}, path); }, &told), kDeviceIoError);
    EXPECT_EQ(told, "the picture can't be drawn: no font is installed");
    EXPECT_EQ(ReadFile(path), "old");
  }
  unsetenv("FONTCONFIG_FILE");
}
#endif

}  // namespace
}  // namespace merivane::test
