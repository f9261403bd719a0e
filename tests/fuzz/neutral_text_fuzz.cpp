// A text is read, translated, written as an MPX file, and written back as a text.
#include "memory_database.h"
#include "memory_file.h"
#include "neutraltext/modProjectToIDEF3.h"
#include "send_out.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace merivane::fuzz;
  static const auto database = TemplateInMemory();
  static MemoryFile text;
  database->Reset();
  text.Fill(data, size);
  try {
    InProgram([](Program& program) {
      SendOut(program, text.Path(), database->Path(), "/dev/null").gMspConn->Close();
      ProjectToModel& back = program.projectToModel;
      back.gInterimProjId = 1;
      back.gProjectConn = std::make_unique<Connection>(program.workspace);
      back.gProjectConn->Open(ConnectionText(database->Path()), OpenMode::kReadOnly);
      back.gOutFile = program.files.FreeFile();
      program.files.OpenForOutput(back.gOutFile, "/dev/null");
      GenerateTextFromProject(back);
    });
  } catch (const ProgramEnd&) {
  }
  return 0;
}
