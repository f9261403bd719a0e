// A text is read, translated, written as an MPX file, and written back as a text.
#include "memory_database.h"
#include "memory_file.h"
#include "neutraltext/modProjectToIDEF3.h"
#include "send_out.h"

namespace merivane::fuzz {

namespace {

void Translate(Program& program, const std::string& text, const std::string& database) {
  SendOut(program, text, database, "/dev/null").gMspConn->Close();

  ProjectToModel& back = program.projectToModel;
  back.gInterimProjId = 1;
  back.gProjectConn = std::make_unique<Connection>(program.workspace);
  back.gProjectConn->Open(ConnectionText(database), OpenMode::kReadOnly);
  back.gOutFile = program.files.FreeFile();
  program.files.OpenForOutput(back.gOutFile, "/dev/null");
  GenerateTextFromProject(back);
}

}  // namespace
}  // namespace merivane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace merivane::fuzz;
  static const auto database = TemplateInMemory();
  static MemoryFile text;
  database->Reset();
  text.Fill(data, size);
  QuietDesktop desktop;
  AnswerWithTheFirst(desktop);
  try {
    Program program(desktop);
    Translate(program, text.Path(), database->Path());
  } catch (const ProgramEnd&) {
  }
  return 0;
}
