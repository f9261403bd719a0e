// The program itself, with and without the modules that lie beside it.
#include <cstdlib>

#include "batch_fixture.h"
#include "model_parts.h"

namespace merivane::test {
namespace {

constexpr const char* kLayout = "merivane-layout.so";
constexpr const char* kRendering = "merivane-rendering.so";

class Modules : public Batch {
 protected:
  Modules() {
    for (const char* name : {"merivane-batch", "MerivaneTemplate.mdb", kLayout, kRendering}) {
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
    const std::string line = "cd '" + folder.Path("") + "' && ./" + words + " > told 2>&1";
    const int status = std::system(line.c_str());
    told_ = Read("told");
    return status / 256;
  }

  // Makes the module one of another version.
  void Age(const char* module) {
    std::string bytes = Read(module);
    EXPECT_EQ(Start("merivane-batch --version"), kDone);
    const std::string version =
        told_.substr(told_.find(' ') + 1, told_.find('\n') - told_.find(' ') - 1);
    for (std::size_t at = bytes.find(version); at != std::string::npos;
         at = bytes.find(version, at)) {
      bytes[at] = 'x';
    }
    folder.Write(module, bytes);
  }

  std::string told_;
};

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

TEST_F(Modules, WithoutTheLayoutAPageStandsAndTellsWhy) {
  ASSERT_EQ(Start("merivane-batch draw model.txt --output a.svg"), kDone) << told_;
  for (const bool isOld : {true, false}) {
    const std::string why = isOld ? " is not of version " : ": cannot open shared object file";
    isOld ? Age(kLayout) : static_cast<void>(fs::remove(folder.Path(kLayout)));
    EXPECT_EQ(Start("merivane-batch draw model.txt --output a.svg --force"), kDoneWithMessages);
    EXPECT_THAT(told_, AllOf(HasSubstr("the scenario 'Shop' can't be laid out (start Merivane "
                                       "again, or install it again: "),
                             HasSubstr(kLayout + why),
                             HasSubstr("0 diagrams, 1 as a list; written: a.svg")));
    EXPECT_EQ(Start("merivane-batch report model.txt --output a.html --force"), kDoneWithMessages);
    EXPECT_THAT(Read("a.html"), AllOf(HasSubstr(kLayout + why), HasSubstr("id=\"plan-task-1\"")));
    EXPECT_EQ(Start("merivane-batch to-project model.txt --database a.mdb --overwrite"), kDone);
    EXPECT_EQ(Start("merivane-batch chart a.mdb --project 1 --output b.png --force"), kDone);
  }
}

TEST_F(Modules, WithoutTheRenderingTheFileStays) {
  for (const bool isOld : {true, false}) {
    isOld ? Age(kRendering) : static_cast<void>(fs::remove(folder.Path(kRendering)));
    for (const char* name : {"a.png", "a.pdf"}) {
      folder.Write(name, "precious");
      EXPECT_EQ(Start("merivane-batch draw model.txt --force --output " + std::string(name)),
                kFailed);
      EXPECT_THAT(told_, AllOf(HasSubstr("the picture can't be drawn: start Merivane again, or "
                                         "install it again: "),
                               HasSubstr(kRendering)));
      EXPECT_EQ(Read(name), "precious");
    }
    EXPECT_EQ(Start("merivane-batch draw model.txt --force --output a.svg"), kDone) << told_;
  }
}

}  // namespace
}  // namespace merivane::test
