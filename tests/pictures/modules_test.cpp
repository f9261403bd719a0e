// The program itself, with and without what lies beside it for pictures.
#include <cstdlib>

#include "batch_fixture.h"
#include "model_parts.h"

namespace merivane::test {
namespace {

#ifdef _WIN32
constexpr const char* kProgram = "merivane-batch.exe";
constexpr const char* kLayout = "merivane-layout.exe";
constexpr const char* kRendering = "merivane-access.exe";
#else
constexpr const char* kProgram = "merivane-batch";
constexpr const char* kLayout = "merivane-layout.so";
constexpr const char* kRendering = "merivane-rendering.so";
#endif

class Modules : public Batch {
 protected:
  Modules() {
    for (const char* name : {kProgram, "MerivaneTemplate.mdb", kLayout, kRendering}) {
      fs::copy_file(std::string(MERIVANE_BIN "/") + name, folder.Path(name));
    }
    // Tangled, so that the library has to lay it out.
    std::string units, links;
    for (const char* number : {"1", "2", "3", "4"}) {
      units += Unit(number, number[0] % 2 == 1 ? "Cut" : "Sand");
    }
    for (const auto& [from, to] : {std::pair{"1", "3"}, {"1", "4"}, {"2", "3"}, {"2", "4"}}) {
      links += test::Link(std::string(from) + to, from, to);
    }
    Parts parts;
    parts.scenarios = Scenario("1", "Shop", "", units, "", links);
    folder.Write("model.txt", FileText(ModelOf(parts)));
  }

  // Runs the copy of the program in the folder; gives its exit status.
  int Start(const std::string& words) {
#ifdef _WIN32
    const std::string line = "cd /d \"" + folder.Path("") + "\" && merivane-batch.exe " + words;
    const int status = std::system((line + " > told 2>&1").c_str());
#else
    const std::string line = "cd '" + folder.Path("") + "' && ./merivane-batch " + words;
    const int status = std::system((line + " > told 2>&1").c_str()) / 256;
#endif
    told_ = Read("told");
    return status;
  }

  void ExpectAPageWithout(const std::string& why) {
    EXPECT_EQ(Start("draw model.txt --output a.svg --force"), kDoneWithMessages);
    EXPECT_THAT(told_, AllOf(HasSubstr("the scenario 'Shop' " + why),
                             HasSubstr("0 diagrams, 1 as a list; written: a.svg")));
    EXPECT_EQ(Start("report model.txt --output a.html --force"), kDoneWithMessages);
    EXPECT_THAT(Read("a.html"), HasSubstr("id=\"plan-task-1\""));
    EXPECT_EQ(Start("to-project model.txt --database a.mdb --overwrite"), kDone);
    EXPECT_EQ(Start("chart a.mdb --project 1 --output b.svg --force"), kDone);
  }

#ifndef _WIN32
  // Makes the module one of another version.
  void Age(const char* module) {
    std::string bytes = Read(module);
    EXPECT_EQ(Start("--version"), kDone);
    const std::string version =
        told_.substr(told_.find(' ') + 1, told_.find('\n') - told_.find(' ') - 1);
    for (std::size_t at = bytes.find(version); at != std::string::npos;
         at = bytes.find(version, at)) {
      bytes[at] = 'x';
    }
    folder.Write(module, bytes);
  }
#endif

  std::string told_;
};

TEST_F(Modules, WithoutTheLayoutAPageStandsAndTellsWhy) {
  ASSERT_EQ(Start("draw model.txt --output a.svg"), kDone) << told_;
  const std::string again = "can't be laid out (start Merivane again, or install it again: ";
#ifdef _WIN32
  fs::remove(folder.Path(kLayout));
  fs::copy_file(folder.Path(kProgram), folder.Path(kLayout));  // another program
  ExpectAPageWithout("is too large to be laid out");
  fs::remove(folder.Path(kLayout));
  ExpectAPageWithout(again + "merivane-layout.exe can't be started)");
#else
  const std::string path = folder.Path(kLayout);
  Age(kLayout);
  ExpectAPageWithout(again + path + " is not of version ");
  fs::remove(path);
  ExpectAPageWithout(again + path + ": cannot open shared object file");
#endif
}

#ifndef _WIN32
TEST_F(Modules, TheProgramLoadsNoLibraryOfPicturesItself) {
  ASSERT_EQ(
      std::system(
          ("ldd '" + folder.Path("merivane-batch") + "' > '" + folder.Path("told") + "'").c_str()),
      0);
  const std::string libraries = Read("told");
  EXPECT_THAT(libraries, HasSubstr("libsqlite3"));
  for (const char* name : {"gvc", "cgraph", "rsvg", "cairo", "pango", "gio", "fontconfig"}) {
    EXPECT_THAT(libraries, Not(HasSubstr(std::string("lib") + name))) << name;
  }
}

TEST_F(Modules, WithoutTheRenderingTheFileStays) {
  for (const bool isOld : {true, false}) {
    isOld ? Age(kRendering) : static_cast<void>(fs::remove(folder.Path(kRendering)));
    for (const char* name : {"a.png", "a.pdf"}) {
      folder.Write(name, "precious");
      EXPECT_EQ(Start("draw model.txt --force --output " + std::string(name)), kFailed);
      EXPECT_THAT(told_, AllOf(HasSubstr("the picture can't be drawn: start Merivane again, or "
                                         "install it again: "),
                               HasSubstr(kRendering)));
      EXPECT_EQ(Read(name), "precious");
    }
    EXPECT_EQ(Start("draw model.txt --force --output a.svg"), kDone) << told_;
  }
}
#endif

}  // namespace
}  // namespace merivane::test
