// Names and files as only Windows has them.
#include <windows.h>

#include "batch_fixture.h"

namespace merivane::test {

namespace {

class WindowsFiles : public Batch {
 protected:
  // A sample, and what more stands on the line.
  int ToProject(const std::string& line) {
    return Run("to-project --database '" + plan + "' %" + line);
  }
  // As programs name it that know paths of any length.
  std::string LongName(const std::string& path) {
    return R"(\\?\)" + Utf8Of(fs::absolute(PathOf(path)).make_preferred());
  }

  std::string plan = folder.Path("plan.mdb");
};

// A file that another program has open for itself alone.
class HeldFile {
 public:
  HeldFile(const std::string& path, DWORD share)
      : handle_(CreateFileW(PathOf(path).c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0,
                            nullptr)) {}
  ~HeldFile() { CloseHandle(handle_); }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

 private:
  HANDLE handle_;
};

TEST_F(WindowsFiles, EveryKindOfPathLeadsThereAndBack) {
  const std::string chinese = "\xe4\xb8\xad\xe6\x96\x87 \xc5\x99";  // not in Windows-1252
  const std::string deep = folder.Path(std::string(120, 'a') + "/" + std::string(120, 'b'));
  fs::create_directories(PathOf(folder.Path(chinese)));
  fs::create_directories(PathOf(deep));
  for (const std::string& place :
       {Utf8Of(PathOf(folder.Path("a")).make_preferred()), folder.Path(chinese + "/a"),
        LongName(folder.Path("u")), deep + "/a", LongName(deep) + R"(\l)"}) {
    plan = place + ".mdb";
    EXPECT_EQ(ToProject("onboarding.txt --mpx '" + place + ".mpx'"), kDone) << place << err.str();
    EXPECT_NE(out.str().find(place), std::string::npos) << out.str();
    EXPECT_EQ(RunWords({"to-model", "--mpx", place + ".mpx", "--interim", plan, "--merge", "1",
                        "--output", place + ".txt", "--quiet"}),
              kDone)
        << place << err.str();
    EXPECT_TRUE(ReadFile(place + ".txt").find("End  Scenario List") != std::string::npos) << place;
  }
}

TEST_F(WindowsFiles, ANameWhereNoFileCanBeIsToldSo) {
  const auto before = Files();
  for (const std::string& name :
       {folder.Path("CON"), folder.Path("nul.mdb"), folder.Path("AUX .mdb"),
        folder.Path("com1.mdb"), folder.Path("LPT9.x.mdb"), std::string("C:plan.mdb"),
        std::string(R"(\\.\COM1.mdb)"), folder.Path("a*.mdb"), folder.Path("a<b>|c.mdb"),
        folder.Path("plan.mdb:stream.mdb"), std::string(R"(\\127.0.0.1\none\plan.mdb)"),
        std::string(R"(Q:\none\plan.mdb)")}) {
    plan = name;
    EXPECT_EQ(ToProject("onboarding.txt"), kRefused) << name << out.str();
    EXPECT_THAT(err.str(), testing::HasSubstr(name));
  }
  plan = folder.Path("COM.mdb");
  EXPECT_EQ(ToProject("onboarding.txt --mpx @nul.mpx"), kRefused);
  EXPECT_TRUE(Files() == before);
  EXPECT_EQ(ToProject("onboarding.txt --mpx @COM10.mpx"), kDone);
}

TEST_F(WindowsFiles, AFileThatAnotherProgramHoldsIsLeftAsItIs) {
  ASSERT_EQ(ToProject("onboarding.txt --mpx @plan.mpx"), kDone) << err.str();
  const auto before = Files();
  for (const DWORD share :
       {DWORD{0}, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}}) {
    for (const std::string& held : {plan, folder.Path("plan.mpx")}) {
      {
        const HeldFile file(held, share);
        const int status = ToProject("bakery.txt --overwrite --mpx @plan.mpx --force");
        EXPECT_TRUE(status == kFailed || status == kRefused) << held << out.str() << err.str();
        EXPECT_FALSE(err.str().empty()) << held;
      }
      EXPECT_TRUE(Files() == before) << held;
    }
  }
}

}  // namespace
}  // namespace merivane::test
