// Writes the seeds that are made from others: fuzz_seeds FOLDER.
#include <filesystem>
#include <fstream>

#include "access_file_builder.h"
#include "memory_database.h"
#include "memory_file.h"
#include "mspdi/plan_writer.h"
#include "send_out.h"

namespace merivane::fuzz {

namespace {

namespace fs = std::filesystem;

void Write(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary).write(bytes.data(), std::ssize(bytes));
}

// The model's plans for both modes of the merge.
void WritePlans(const fs::path& model, MemoryDatabase& database, const fs::path& folder) {
  const std::string name = model.stem().string();
  database.Reset();
  const fs::path plan = folder / (name + ".mpx");
  const fs::path xml = folder / (name + ".xml");
  InProgram([&](Program& program) {
    const auto& state = SendOut(program, model.string(), database.Path(), plan.string());
    mspdi::WritePlan(*state.gMspConn, 1, state.desktop.Today(), xml.string());
  });
  for (const char* mode : {"0", "1"}) {
    Write(folder / "mpx" / (name + mode), mode + Content(plan));
    Write(folder / "xml" / (name + mode), mode + Content(xml));
  }
  fs::remove(plan);
  fs::remove(xml);
}

void WriteAccess(const fs::path& folder) {
  using test::Raw;
  using test::Raw16;
  test::AccessFileBuilder file;
  file.AddTable(
      u"MSP_TASKS",
      {{u"TASK_UID", 4},
       {u"TASK_NAME", 10},
       {u"Note", 12},
       {u"Real", 7},
       {u"Day", 8},
       {u"Money", 5},
       {u"Mark", 1},
       {u"Id", 15},
       {u"Data", 11}},
      {{Raw(1), test::Utf16(u"Dig"), file.Chained(test::Utf16(u"A note")), Raw(1.5), Raw(36526.25),
        Raw(std::int64_t{15000}), "", std::string(16, 'x'), file.Chained("data")}});
  Write(folder / "access" / "small", file.Build());
}

}  // namespace
}  // namespace merivane::fuzz

int main(int count, char** arguments) {
  using namespace merivane::fuzz;
  const fs::path folder = count > 1 ? arguments[1] : ".";
  const auto database = TemplateInMemory();
  fs::create_directories(folder);
  for (const auto& model : fs::directory_iterator(MERIVANE_SEEDS "/neutral_text")) {
    WritePlans(model.path(), *database, folder);
  }
  WriteAccess(folder);
  return 0;
}
