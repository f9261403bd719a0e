#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "bench_support.h"
#include "model_generator.h"
#include "platform/scripted_desktop.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "shell/drivers.h"
#include "store/interim_db.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::bench {

using namespace translator;
using namespace roundtrip;
using namespace shell;

namespace {

// Leaves the model in `database` and the plan in `mpx`, with the record 30 that the reader needs.
void MakeMpx(const TemporaryFolder& folder, int size) {
  WriteFile(folder.File("model.txt"), GenerateModel(size));
  ScriptedDesktop desktop;
  Program program(desktop);
  ModelToProject& state = program.modelToProject;
  OpenInterimDb(program.workspace, state.gMspConn, true, folder.TemplateCopy("model.mdb"));
  state.gOverwriteDb = true;
  state.gMspProjId = 1;
  ReadNeutralText(state, folder.File("model.txt"));
  TranslateToProject(state, folder.File("plan.mpx"));
  CloseMspConnection(state);
}

double Translate(const TemporaryFolder& folder, bool merge) {
  if (merge) {
    std::filesystem::copy_file(folder.File("model.mdb"), folder.File("work.mdb"),
                               std::filesystem::copy_options::overwrite_existing);
  } else {
    folder.TemplateCopy("work.mdb");
  }
  ScriptedDesktop desktop;
  Program program(desktop);
  ProjectToModel& state = program.projectToModel;
  const double seconds = Seconds([&] {
    state.gInterimConn = std::make_unique<Connection>(program.workspace);
    state.gInterimConn->Open(ConnectionText(folder.File("work.mdb")));
    state.gInterimProjId = 1;
    state.gRoundTripMerge = merge;
    state.gOutFile = program.files.FreeFile();
    program.files.OpenForOutput(state.gOutFile, folder.File("again.txt"));
    TranslateMpx(state, folder.File("plan.mpx"), "", static_cast<std::int16_t>(merge ? -1 : 0));
  });
  if (!desktop.shown.empty()) {
    std::printf("(%zu boxes: %s)\n", desktop.shown.size(), desktop.MessageTexts().front().c_str());
  }
  return seconds;
}

}  // namespace

void MeasureMpxToModel() {
  std::printf("From an MPX file to a model (seconds)\n");
  std::printf("%10s %8s %9s %9s\n", "mode", "tasks", "whole", "x before");
  for (const bool merge : {false, true}) {
    double before = 0;
    for (const int size : kSizes) {
      const TemporaryFolder folder;
      MakeMpx(folder, size);
      double whole = 1e9;
      for (int run = 0; run < kRuns; ++run) whole = std::min(whole, Translate(folder, merge));
      std::printf("%10s %8d %9.3f %9.2f\n", merge ? "merge" : "overwrite", size, whole,
                  before > 0 ? whole / before : 0.0);
      before = whole;
    }
  }
  std::printf("\n");
}

}  // namespace merivane::bench
