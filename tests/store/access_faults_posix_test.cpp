// An Access file on a disk that can't read one block of it.
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "access_copy.h"
#include "access_file_builder.h"
#include "error_of.h"
#include "temporary_folder.h"

namespace {

long readsUntilFault = 0;  // 0: none fails

}  // namespace

// In place of the system's own: the reader of Access files calls it for each page.
extern "C" size_t fread(void* to, size_t size, size_t count, std::FILE* stream) {
  using Read = size_t (*)(void*, size_t, size_t, std::FILE*);
  static const auto original = reinterpret_cast<Read>(dlsym(RTLD_NEXT, "fread"));
  if (readsUntilFault == 0 || --readsUntilFault != 0) return original(to, size, count, stream);
  // The system refuses to read what is open for writing only.
  const int file = fileno(stream);
  const int aside = dup(file);
  const int unreadable = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(unreadable, file);
  const size_t read = original(to, size, count, stream);
  dup2(aside, file);
  close(aside);
  close(unreadable);
  return read;
}

namespace merivane::test {

using namespace store;

namespace {

TEST(AccessFaults, OneFailingReadEndsTheLoad) {
  AccessFileBuilder builder;
  for (const char16_t* name : {u"A", u"B", u"C"}) builder.AddTable(name, {{u"N", 4}}, {{Raw(1)}});
  const TemporaryFolder folder;
  const std::string path = folder.Write("plan.mdb", builder.Build());
  const std::string target = folder.Path("copy.sqlite");
  const std::string whole = folder.Path("whole.sqlite");
  WorkListener nobody;
  LoadAccessFile(path, whole, nobody);
  int failed = 0;
  for (long at = 1; at < 1000; ++at) {
    readsUntilFault = at;
    std::string told;
    if (ErrorOf([&] { LoadAccessFile(path, target, nobody); }, &told) == 0) break;
    ++failed;
    EXPECT_NE(told.find("plan.mdb"), std::string::npos) << told;
    EXPECT_FALSE(std::filesystem::exists(target)) << "read " << at;
  }
  readsUntilFault = 0;
  EXPECT_GT(failed, 5) << "each page is read once at least";
  EXPECT_EQ(ReadFile(target), ReadFile(whole)) << "read " << failed + 1;
}

}  // namespace

}  // namespace merivane::test
