#include "runtime/text_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "error_of.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace runtime;

namespace {

namespace fs = std::filesystem;

class TextFilesTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }
  std::string Make(const std::string& name, const std::string& content) const {
    return folder_.Write(name, content);
  }
  std::string Content(const std::string& name) const { return ReadFile(Path(name)); }

  std::vector<std::string> Lines(const std::string& content) {
    std::vector<std::string> lines;
    files_.OpenForInput(1, Make("lines.txt", content));
    while (!files_.AtEnd(1)) lines.push_back(files_.ReadLine(1));
    files_.Close(1);
    return lines;
  }

  TemporaryFolder folder_;
  TextFiles files_;
};

TEST_F(TextFilesTest, LinesEndInAnyOfTheThreeWays) {
  using testing::ElementsAre;
  EXPECT_THAT(Lines("a\r\nb\nc\rd"), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(Lines("\r\r\n\n\r"), ElementsAre("", "", "", ""));
  EXPECT_THAT(Lines(std::string("a\0b\r\n", 5)), ElementsAre(std::string("a\0b", 3)));
  EXPECT_THAT(Lines(""), ElementsAre());
}

// Line ends fall on every place around the edge of a read block, whatever its size.
TEST_F(TextFilesTest, LongFilesComeLineByLine) {
  std::string content;
  std::vector<std::string> expected;
  for (std::size_t i = 0; i < 3000; ++i) {
    expected.emplace_back(i % 1000 == 999 ? 1000003 : i, static_cast<char>('a' + i % 26));
    content += expected.back() + "\r\n";
  }
  EXPECT_EQ(Lines(content), expected);
  expected.insert(expected.begin(), "");
  EXPECT_EQ(Lines("\n" + content), expected);
}

TEST_F(TextFilesTest, WhatNeverEndsIsRefused) {
  files_.OpenForInput(1, Make("long.txt", "short\n" + std::string((1 << 20) + 1, 'x')));
  EXPECT_EQ(files_.ReadLine(1), "short");
  EXPECT_EQ(ErrorOf([&] { files_.ReadLine(1); }), kPathFileAccessError);
#ifndef _WIN32
  EXPECT_EQ(ErrorOf([&] { files_.OpenForInput(2, "/dev/zero"); }), kPathFileAccessError);
#endif
}

TEST_F(TextFilesTest, ReadingPastTheEndFails) {
  files_.OpenForInput(1, Make("one.txt", "line"));
  EXPECT_EQ(files_.ReadLine(1), "line");
  EXPECT_TRUE(files_.AtEnd(1));
  EXPECT_EQ(ErrorOf([&] { files_.ReadLine(1); }), kInputPastEndOfFile);
  EXPECT_TRUE(files_.IsOpen(1));
}

TEST_F(TextFilesTest, PrintedTextGoesOutUnchanged) {
  Make("out.txt", "what stood there before");
  files_.OpenForOutput(1, Path("out.txt"));
  files_.Print(1, std::string("a\0\n\x80", 4));
  files_.Print(1, "");
  EXPECT_FALSE(files_.AtEnd(1));
  files_.Flush(1);
  EXPECT_EQ(Content("out.txt"), std::string("a\0\n\x80\r\n\r\n", 8));
}

TEST_F(TextFilesTest, NumbersAreTheLowestFreeOnes) {
  files_.OpenForInput(files_.FreeFile(), Make("in.txt", ""));
  files_.Reserve(2);
  EXPECT_EQ(files_.FreeFile(), 3);
  files_.Close(1);
  EXPECT_EQ(files_.FreeFile(), 1);
  files_.Reserve(1);
  files_.Release(2);
  EXPECT_EQ(files_.FreeFile(), 2);
}

TEST_F(TextFilesTest, AFileOpenedAgainForOutputIsClosedFirst) {
  files_.OpenForOutput(1, Path("plan.mpx"));
  Link(Path("plan.mpx"), Path("link.mpx"));
  files_.Print(1, "old");
  files_.OpenForOutput(2, Path("link.mpx"));
  EXPECT_FALSE(files_.IsOpen(1));
  files_.Print(2, "new");
  files_.CloseAll();
  EXPECT_EQ(Content("plan.mpx"), "new\r\n");
}

TEST_F(TextFilesTest, DroppedFilesAreWhole) {
  {
    TextFiles dropped;
    dropped.OpenForOutput(1, Path("out.txt"));
    dropped.Print(1, "line");
  }
  EXPECT_EQ(Content("out.txt"), "line\r\n");
}

TEST_F(TextFilesTest, OpeningFailsByTheReason) {
  Make("file", "");
  const auto input = [&](const std::string& path) {
    return ErrorOf([&] { files_.OpenForInput(1, path); });
  };
  const auto output = [&](const std::string& path) {
    return ErrorOf([&] { files_.OpenForOutput(1, path); });
  };
  EXPECT_EQ(input(Path("none")), kFileNotFound);
  EXPECT_EQ(input(Path("none/file")), kPathNotFound);
  EXPECT_EQ(output(Path("none/file")), kPathNotFound);
  EXPECT_EQ(output(Path("file/below")), kPathNotFound);
  EXPECT_EQ(input(Path(".")), kPathFileAccessError);
  EXPECT_EQ(output(Path(".")), kPathFileAccessError);
  EXPECT_EQ(input(""), kPathFileAccessError);
  EXPECT_EQ(files_.FreeFile(), 1);
  files_.OpenForInput(1, Path("file"));
  EXPECT_EQ(output(Path("other")), kFileAlreadyOpen);
}

TEST_F(TextFilesTest, AFileWithoutPermissionIsRefused) {
  fs::permissions(Make("closed.txt", ""), fs::perms::none);
  if (std::ofstream(Path("closed.txt"), std::ios::app)) GTEST_SKIP() << "this user may open all";
#ifndef _WIN32  // where it is closed to writers alone
  EXPECT_EQ(ErrorOf([&] { files_.OpenForInput(1, Path("closed.txt")); }), kPermissionDenied);
#endif
  EXPECT_EQ(ErrorOf([&] { files_.OpenForOutput(1, Path("closed.txt")); }), kPermissionDenied);
}

TEST_F(TextFilesTest, WrongUseOfANumberFails) {
  files_.OpenForInput(1, Make("in.txt", "line"));
  files_.OpenForOutput(2, Path("out.txt"));
  EXPECT_EQ(ErrorOf([&] { files_.Print(1, ""); }), kBadFileMode);
  EXPECT_EQ(ErrorOf([&] { files_.ReadLine(2); }), kBadFileMode);
  EXPECT_EQ(ErrorOf([&] { files_.AtEnd(3); }), kBadFileNumber);
  files_.Close(3);
  files_.Flush(3);
}

TEST_F(TextFilesTest, AFullDiskIsToldOnceAndNamesTheFile) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no full device here";
  files_.OpenForOutput(1, "/dev/full");
  files_.OpenForOutput(2, Path("good.txt"));
  for (int line = 0; line < 1000; ++line) files_.Print(1, std::string(999, 'x'));
  files_.Print(2, "line");
  std::string description;
  EXPECT_EQ(ErrorOf([&] { files_.Flush(1); }, &description), kDiskFull);
  EXPECT_EQ(description, "Disk full: '/dev/full'");
  files_.Print(1, "line");
  files_.Flush(1);
  files_.CloseAll();
  EXPECT_EQ(Content("good.txt"), "line\r\n");
  files_.OpenForOutput(1, "/dev/full");
  files_.Print(1, "line");
  EXPECT_EQ(ErrorOf([&] { files_.CloseAll(); }), kDiskFull);
  EXPECT_FALSE(files_.IsOpen(1));
}

TEST_F(TextFilesTest, PrintedTextGoesOutInLargeBlocks) {
  files_.OpenForOutput(1, Path("out.txt"));
  for (int line = 0; line < 100; ++line) files_.Print(1, std::string(998, 'x'));
  EXPECT_EQ(fs::file_size(Path("out.txt")), 0U);
  for (int line = 0; line < 300; ++line) files_.Print(1, std::string(998, 'x'));
  EXPECT_GT(fs::file_size(Path("out.txt")), 200000U);
  files_.Close(1);
  EXPECT_EQ(fs::file_size(Path("out.txt")), 400000U);
}

}  // namespace
}  // namespace merivane::test
