// A plan comes back into the model of a seed: merged, or as a model of its own.
#pragma once

#include "memory_database.h"
#include "memory_file.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "send_out.h"

namespace merivane::fuzz {

using namespace roundtrip;

// The interim database of a model that was sent out.
inline std::unique_ptr<MemoryDatabase> SentModel() {
  auto database = TemplateInMemory();
  InProgram([&](Program& program) {
    SendOut(program, MERIVANE_SEEDS "/neutral_text/yard.txt", database->Path(), "/dev/null")
        .gMspConn->Close();
  });
  database->KeepAsImage();
  return database;
}

// The first byte of the file says which of the two; the rest is the plan.
template <typename Translate>
void BringBack(const std::uint8_t* data, std::size_t size, Translate translate) {
  static const auto database = SentModel();
  static MemoryFile plan;
  if (size == 0) return;
  database->Reset();
  plan.Fill(data + 1, size - 1);
  try {
    InProgram([&](Program& program) {
      ProjectToModel& state = program.projectToModel;
      state.gInterimProjId = 1;
      state.gInterimConn = std::make_unique<Connection>(program.workspace);
      state.gInterimConn->Open(ConnectionText(database->Path()));
      state.gOutFile = program.files.FreeFile();
      program.files.OpenForOutput(state.gOutFile, "/dev/null");
      translate(state, plan.Path(), static_cast<std::int16_t>(*data % 2 == 0 ? -1 : 0));
    });
  } catch (const ProgramEnd&) {
  }
}

}  // namespace merivane::fuzz
