// Measures merivane-batch at several sizes, beside the least work that could give the same rows and
// text, and beside another build; see docs/performance.md.
#include <algorithm>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "bench_support.h"
#include "floors.h"
#include "large_database.h"
#include "model_generator.h"
#include "plan_generator.h"
#include "planning_xml.h"

namespace merivane::bench {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr const char* kProgram = MERIVANE_BIN "/merivane-batch";
constexpr const char* kTemplate = MERIVANE_BIN "/MerivaneTemplate.mdb";
constexpr int kTasksOfAProject = 100;

struct Options {
  std::vector<int> sizes{1000, 4000, 16000};
  std::string against;
  std::string only;
  bool instructions = true;
};

// Every case runs in a folder with a model of its size, model.txt, and what a run made of it:
// plan.mdb, plan.mpx, plan.xml.
struct Case {
  const char* name;
  Words arguments;
  std::string start;         // copied to work.mdb before each run; empty: none is there
  std::vector<Words> floor;  // the steps that a direction must take; empty where none is told
  void (*prepare)(const TemporaryFolder&, int size) = nullptr;
  int largest = 16000;  // size up to which the case holds
};

Words With(std::initializer_list<const char*> words) { return {words.begin(), words.end()}; }

Words And(Words words, std::initializer_list<const char*> more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

void Translate(const TemporaryFolder& folder, const std::string& model, const char* database) {
  WriteFile(folder.File("model.txt"), model);
  Measure(
      {kProgram, "to-project", "model.txt", "--database", database, "--mpx", "plan.mpx", "--xml",
       "plan.xml", "--overwrite", "--force"},
      folder, [] {}, false);
}

void PrepareModel(const TemporaryFolder& folder, int size) {
  Translate(folder, GenerateModel(size), "plan.mdb");
}

void PrepareObjects(const TemporaryFolder& folder, int size) {
  WriteFile(folder.File("model.txt"), GenerateObjectsOfOneName(size));
}

void PrepareProjects(const TemporaryFolder& folder, int size) {
  WriteFile(folder.File("model.txt"), GenerateModel(kTasksOfAProject));
  fs::copy_file(kTemplate, folder.File("plan.mdb"));
  Execute(folder.File("plan.mdb"), ManyProjects(size / kTasksOfAProject));
}

void PreparePlan(const TemporaryFolder& folder, int size,
                 std::string (*generate)(const std::string&, int)) {
  Translate(folder, GenerateModel(20), "plan.mdb");
  const std::string mpx = folder.File("plan.mpx");
  WriteFile(mpx, generate(ReadFile(mpx), size));
}
void PrepareDeepPlan(const TemporaryFolder& folder, int size) {
  PreparePlan(folder, size, DeepPlan);
}
void PrepareMesh(const TemporaryFolder& folder, int size) { PreparePlan(folder, size, MeshPlan); }

template <Shape kShape>
void PrepareShape(const TemporaryFolder& folder, int size) {
  WriteFile(folder.File("model.txt"), GenerateShape(kShape, size));
}
void PrepareHubPlan(const TemporaryFolder& folder, int size) {
  Translate(folder, GenerateShape(Shape::kHub, size), "plan.mdb");
}

// A rebuilt model of more units has numbers beyond 32,767.
constexpr int kLargestRebuilt = 4000;

std::vector<Case> Translations() {
  const Words readModel = With({"lines", "model.txt"});
  const Words readPlan = With({"select", "plan.mdb"});
  const Words readMpx = With({"lines", "plan.mpx"});
  const Words newRows = With({"change", "work.mdb", kTemplate});
  const Words changedRows = With({"change", "work.mdb", "plan.mdb"});
  const Words writeText = With({"write", "out.txt", "copy"});
  const Words writeMpx = With({"write", "plan.mpx", "copy"});
  const Words writeXml = With({"write", "plan.xml", "copy"});
  const Words toProject = With({"to-project", "model.txt", "--database", "work.mdb"});
  const Words toModel = With({"to-model", "--output", "out.txt", "--force"});
  const Words overwrite =
      And(toModel, {"--mpx", "plan.mpx", "--interim", "work.mdb", "--overwrite"});
  const auto merge = [&](const char* format, const char* file) {
    return And(toModel, {format, file, "--interim", "work.mdb", "--merge", "1", "--no-backup",
                         "--no-proof"});
  };
  return {
      {"to-project --mpx",
       And(toProject, {"--mpx", "work.mpx"}),
       "",
       {readModel, newRows, writeMpx},
       PrepareModel},
      {"to-project --xml",
       And(toProject, {"--xml", "work.xml"}),
       "",
       {readModel, newRows, writeXml},
       PrepareModel},
      {"to-model --database",
       And(toModel, {"--database", "plan.mdb", "--project", "1"}),
       "",
       {readPlan, writeText},
       PrepareModel,
       kLargestRebuilt},
      {"--mpx --overwrite",
       overwrite,
       "",
       {readMpx, newRows, writeText},
       PrepareModel,
       kLargestRebuilt},
      {"--mpx --merge",
       merge("--mpx", "plan.mpx"),
       "plan.mdb",
       {readMpx, readPlan, changedRows, writeText},
       PrepareModel},
      {"--xml --merge",
       merge("--xml", "plan.xml"),
       "plan.mdb",
       {With({"lines", "plan.xml"}), readPlan, changedRows, writeText},
       PrepareModel},
      {"export --xml",
       With({"export", "plan.mdb", "--project", "1", "--xml", "work.xml"}),
       "",
       {readPlan, writeXml},
       PrepareModel},
      {"objects of one name",
       And(toProject, {"--mpx", "work.mpx"}),
       "",
       {readModel, newRows},
       PrepareObjects,
       kLargestRebuilt},
      {"deep plan, --overwrite",
       overwrite,
       "",
       {readMpx, newRows, writeText},
       PrepareDeepPlan,
       kLargestRebuilt},
      {"mesh, --overwrite",
       overwrite,
       "",
       {readMpx, newRows, writeText},
       PrepareMesh,
       kLargestRebuilt},
  };
}

// What looks at files and writes no plan.
std::vector<Case> Views() {
  return {
      {"check", With({"check", "model.txt"}), "", {With({"lines", "model.txt"})}, PrepareModel},
      {"chart",
       With({"chart", "plan.mdb", "--project", "1", "--output", "chart.svg", "--force"}),
       "",
       {},
       PrepareModel},
      {"draw",
       With({"draw", "model.txt", "--output", "pictures.svg", "--force"}),
       "",
       {},
       PrepareModel},
      {"report",
       With({"report", "model.txt", "--output", "page.html", "--force"}),
       "",
       {},
       PrepareModel},
      {"projects", With({"projects", "plan.mdb"}), "", {}, PrepareProjects},
      {"append beside projects",
       With({"to-project", "model.txt", "--database", "work.mdb", "--append"}),
       "plan.mdb",
       {With({"lines", "model.txt"}), With({"change", "work.mdb", "plan.mdb"})},
       PrepareProjects},
  };
}

std::vector<Case> Shapes() {
  const Words draw = With({"draw", "model.txt", "--output", "picture.svg", "--force"});
  const Words merge = With({"to-model", "--mpx", "plan.mpx", "--interim", "work.mdb", "--merge",
                            "1", "--no-backup", "--output", "out.txt", "--force"});
  return {
      {"draw a chain", draw, "", {}, PrepareShape<Shape::kChain>, kLargestRebuilt},
      {"draw a ring", draw, "", {}, PrepareShape<Shape::kRing>, kLargestRebuilt},
      {"draw a hub", draw, "", {}, PrepareShape<Shape::kHub>, kLargestRebuilt},
      {"draw a ladder", draw, "", {}, PrepareShape<Shape::kLadder>, kLargestRebuilt},
      {"draw nested fans", draw, "", {}, PrepareShape<Shape::kNestedFans>, kLargestRebuilt},
      {"merge a hub", merge, "plan.mdb", {}, PrepareHubPlan, kLargestRebuilt},
  };
}

std::vector<Case> Cases() {
  std::vector<Case> cases = Translations();
  for (auto* more : {Views, Shapes}) {
    for (Case& item : more()) cases.push_back(std::move(item));
  }
  return cases;
}

// Leaves the model and its plan alone, and makes the database that a run works on as it was.
void Reset(const TemporaryFolder& folder, const std::string& start) {
  const Words kept = With({"model.txt", "plan.mdb", "plan.mpx", "plan.xml"});
  for (const auto& entry : fs::directory_iterator(folder.File(""))) {
    const std::string name = entry.path().filename().string();
    if (std::find(kept.begin(), kept.end(), name) == kept.end()) fs::remove_all(entry.path());
  }
  if (!start.empty()) fs::copy_file(folder.File(start), folder.File("work.mdb"));
}

// Millions of instructions; 0 where no floor is told. Each step is one argument, its words apart by
// a line end; the database that a step changes is a copy.
double FloorOf(const Case& item, const TemporaryFolder& folder) {
  if (item.floor.empty()) return 0;
  Words command{fs::read_symlink("/proc/self/exe").string(), "floor"};
  for (Words step : item.floor) {
    if (step.front() == "change") {
      fs::copy_file(fs::path(folder.File("")) / step[2], folder.File("floor.mdb"),
                    fs::copy_options::overwrite_existing);
      step[2] = "floor.mdb";
    }
    std::string words;
    for (const std::string& word : step) words += (words.empty() ? "" : "\n") + word;
    command.push_back(words);
  }
  return CountInstructions(command, folder, "merivane::bench::MeasuredFloor*");
}

double Figure(const Cost& cost) { return cost.instructions > 0 ? cost.instructions : cost.seconds; }

// One column; blank where there is no figure.
void Print(double figure, int width, int decimals) {
  if (figure > 0) {
    std::printf(" %*.*f |", width, decimals, figure);
  } else {
    std::printf(" %*s |", width, "");
  }
}

// The figure that growth is told from.
double RunCase(const Case& item, int size, double before, const Options& options) {
  const TemporaryFolder folder;
  InChild([&] { item.prepare(folder, size); });
  const auto run = [&](const std::string& program) {
    Words command{program};
    command.insert(command.end(), item.arguments.begin(), item.arguments.end());
    return Measure(
        command, folder, [&] { Reset(folder, item.start); }, options.instructions);
  };
  const Cost cost = run(kProgram);
  const double floor = options.instructions ? FloorOf(item, folder) : 0;
  std::printf("| %-22s | %6d |", item.name, size);
  Print(cost.instructions, 8, 1);
  Print(floor, 8, 1);
  Print(floor > 0 ? cost.instructions / floor : 0, 6, 2);
  Print(before > 0 ? Figure(cost) / before : 0, 6, 2);
  std::printf(" %7.2f | %5.0f |", cost.seconds, cost.peakMegabytes);
  if (!options.against.empty()) Print(Figure(run(options.against)) / Figure(cost), 5, 2);
  std::printf("\n");
  std::fflush(stdout);
  return Figure(cost);
}

void RunAll(const Options& options) {
  std::printf(
      "| case                   |   size |  M instr |    floor |  ratio | growth |   CPU s |    MB "
      "|%s"
      "\n",
      options.against.empty() ? "" : " other |");
  std::printf("|---|---|---|---|---|---|---|---|%s\n", options.against.empty() ? "" : "---|");
  for (const Case& item : Cases()) {
    if (std::string_view(item.name).find(options.only) == std::string_view::npos) continue;
    double before = 0;
    for (const int size : options.sizes) {
      if (size <= item.largest) before = RunCase(item, size, before, options);
    }
  }
}

std::vector<int> ReadSizes(const std::string& list) {
  std::vector<int> sizes;
  std::istringstream words(list);
  for (std::string word; std::getline(words, word, ',');) sizes.push_back(std::stoi(word));
  return sizes;
}

Options Read(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    const char* value = i + 1 < argc ? argv[i + 1] : nullptr;
    if (word == "--cpu-only") {
      options.instructions = false;
    } else if (word == "--sizes" && value != nullptr) {
      options.sizes = ReadSizes(argv[++i]);
    } else if (word == "--only" && value != nullptr) {
      options.only = argv[++i];
    } else if (word == "--against" && value != nullptr) {
      options.against = fs::absolute(argv[++i]).string();
    } else {
      throw std::runtime_error(
          "merivane_bench [--sizes N,N] [--only PART_OF_A_NAME] [--against OTHER/merivane-batch] "
          "[--cpu-only]");
    }
  }
  return options;
}

void DoFloor(int argc, char** argv) {
  std::vector<std::function<void()>> steps;
  for (int i = 2; i < argc; ++i) {
    std::istringstream lines(argv[i]);
    Words words;
    for (std::string word; std::getline(lines, word);) words.push_back(word);
    steps.push_back(PrepareFloor(words));
  }
  MeasuredFloor(steps);
}

}  // namespace
}  // namespace merivane::bench

int main(int argc, char** argv) try {
  using namespace merivane::bench;
  const std::string_view mode = argc > 1 ? argv[1] : "";
  if (mode == "floor") {
    DoFloor(argc, argv);
  } else if (mode == "xml") {
    MeasurePlanningXml();
  } else if (mode == "large") {
    MeasureLargeDatabase(argc > 2 ? argv[2] : kProgram);
  } else {
    RunAll(Read(argc, argv));
  }
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
