#include <algorithm>
#include <cstdio>

#include "bench_support.h"
#include "model_generator.h"
#include "platform/scripted_desktop.h"
#include "shell/drivers.h"
#include "store/interim_db.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::bench {

using namespace translator;
using namespace shell;

namespace {

struct Times {
  double read = 1e9;
  double whole = 1e9;
};

Times Translate(const TemporaryFolder& folder, const std::string& text) {
  const std::string database = folder.TemplateCopy("plan.mdb");
  ScriptedDesktop desktop;
  Program program(desktop);
  ModelToProject& state = program.modelToProject;
  Times times;
  times.whole = Seconds([&] {
    OpenInterimDb(program.workspace, state.gMspConn, true, database);
    state.gOverwriteDb = true;
    state.gMspProjId = 1;
    times.read = Seconds([&] { ReadNeutralText(state, text); });
    TranslateToProject(state, folder.File("plan.mpx"));
    CloseMspConnection(state);
    program.files.CloseAll();
  });
  if (!desktop.shown.empty()) std::printf("(%zu boxes were shown)\n", desktop.shown.size());
  return times;
}

}  // namespace

void MeasureModelToPlan() {
  std::printf("From a model to a plan and an MPX file (seconds)\n");
  std::printf("%8s %9s %9s %9s %9s %7s %9s %12s\n", "uses", "reading", "transl.", "whole", "floor",
              "ratio", "x before", "peak MiB");
  double before = 0;
  for (const int size : kSizes) {
    const TemporaryFolder folder;
    const std::string text = folder.File("model.txt");
    const std::string model = GenerateModel(size);
    WriteFile(text, model);
    const double peak = PeakMemory([&] { Translate(folder, text); });
    Times best;
    for (int run = 0; run < kRuns; ++run) {
      const Times times = Translate(folder, text);
      best = {std::min(best.read, times.read), std::min(best.whole, times.whole)};
    }
    double floor = 1e9;
    for (int run = 0; run < kRuns; ++run) {
      floor = std::min(floor, InsertFloor(folder.File("plan.mdb"), folder.TemplateCopy("f.mdb")));
    }
    std::printf("%8d %9.3f %9.3f %9.3f %9.3f %7.2f %9.2f %6.0f/%.0f\n", size, best.read,
                best.whole - best.read, best.whole, floor, best.whole / floor,
                before > 0 ? best.whole / before : 0.0, peak,
                8.0 * static_cast<double>(model.size()) / 1048576.0 + 64.0);
    before = best.whole;
  }

  constexpr int kMegabytes = 60;
  const TemporaryFolder folder;
  const std::string text = folder.File("blocks.txt");
  WriteFile(text, GenerateBlockText(kMegabytes));
  double read = 1e9;
  for (int run = 0; run < kRuns; ++run) read = std::min(read, Translate(folder, text).read);
  const double peak = PeakMemory([&] { Translate(folder, text); });
  std::printf("Block text: %.1f MB/s reading, peak %.0f MiB of %.0f\n\n", kMegabytes / read, peak,
              8.0 * kMegabytes + 64.0);
}

}  // namespace merivane::bench
