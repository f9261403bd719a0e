// Measures merivane-batch at two sizes, beside the least work that could give the same rows and
// text, and beside another build; see docs/performance.md.
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "bench_support.h"
#include "floors.h"
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
  int size = 1000;
  std::string against;
  std::string only;
  bool instructions = true;
};

// Every case runs in a folder with a model of its size, model.txt, and what a run made of it:
// plan.mdb and plan.mpx.
struct Case {
  const char* name;
  Words arguments;
  std::string start;  // copied to work.mdb before each run; empty: none is there
  // The floor's files: the rows of `after` are inserted into a copy of `before`, the database
  // `read` is read, and a text like out.txt is written; empty where there is no such work.
  std::string before;
  std::string read;
  void (*prepare)(const TemporaryFolder&, int size) = nullptr;
};

Words With(std::initializer_list<const char*> words) { return {words.begin(), words.end()}; }

void Translate(const TemporaryFolder& folder, const std::string& model, const char* database) {
  WriteFile(folder.File("model.txt"), model);
  Measure(
      {kProgram, "to-project", "model.txt", "--database", database, "--mpx", "plan.mpx",
       "--overwrite", "--force"},
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

std::vector<Case> Cases() {
  const Words toProject =
      With({"to-project", "model.txt", "--database", "work.mdb", "--mpx", "work.mpx"});
  const Words append = With({"to-project", "model.txt", "--database", "work.mdb", "--append"});
  const Words database = With(
      {"to-model", "--database", "plan.mdb", "--project", "1", "--output", "out.txt", "--force"});
  Words overwrite = With(
      {"to-model", "--mpx", "plan.mpx", "--interim", "work.mdb", "--output", "out.txt", "--force"});
  Words merge = overwrite;
  overwrite.emplace_back("--overwrite");
  for (const char* word : {"--merge", "1", "--no-backup"}) merge.emplace_back(word);
  return {
      {"to-project", toProject, "", kTemplate, "", PrepareModel},
      {"to-model --database", database, "", "", "plan.mdb", PrepareModel},
      {"to-model --overwrite", overwrite, "", kTemplate, "work.mdb", PrepareModel},
      {"to-model --merge", merge, "plan.mdb", "plan.mdb", "work.mdb", PrepareModel},
      {"objects of one name", toProject, "", kTemplate, "", PrepareObjects},
      {"projects", With({"projects", "plan.mdb"}), "", "", "", PrepareProjects},
      {"append beside projects", append, "plan.mdb", "plan.mdb", "", PrepareProjects},
      {"deep plan, --overwrite", overwrite, "", kTemplate, "work.mdb", PrepareDeepPlan},
      {"mesh, --overwrite", overwrite, "", kTemplate, "work.mdb", PrepareMesh},
  };
}

// Makes the files that a run works on as they were.
void Reset(const TemporaryFolder& folder, const std::string& start) {
  for (const char* name : {"work.mdb", "work.mdb.bak", "plan.mdb.bak", "work.mpx", "out.txt"}) {
    fs::remove(folder.File(name));
  }
  if (!start.empty()) fs::copy_file(folder.File(start), folder.File("work.mdb"));
}

std::optional<Cost> MeasureFloor(const Case& item, const TemporaryFolder& folder,
                                 bool instructions) {
  if (item.before.empty() && item.read.empty()) return std::nullopt;
  const std::string own = fs::read_symlink("/proc/self/exe").string();
  const auto prepare = [&] {
    if (item.before.empty()) return;
    fs::copy_file(fs::path(folder.File("")) / item.before, folder.File("floor.mdb"),
                  fs::copy_options::overwrite_existing);
  };
  const char* after = item.before.empty() ? "" : "work.mdb";
  return Measure({own, "floor", after, "floor.mdb", item.read}, folder, prepare, instructions);
}

double Figure(const Cost& cost) { return cost.instructions > 0 ? cost.instructions : cost.seconds; }

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
  const std::optional<Cost> floor = MeasureFloor(item, folder, options.instructions);
  std::printf("| %-22s | %6d | %7.2f | %7.2f | %5.0f |", item.name, size, cost.seconds, cost.wall,
              cost.peakMegabytes);
  std::printf(" %8.1f |", cost.instructions);
  if (floor) {
    std::printf(" %8.1f | %5.2f |", floor->instructions, Figure(cost) / Figure(*floor));
  } else {
    std::printf(" %8s | %5s |", "", "");
  }
  if (before > 0) {
    std::printf(" %6.2f |", Figure(cost) / before);
  } else {
    std::printf(" %6s |", "");
  }
  if (!options.against.empty())
    std::printf(" %5.2f |", Figure(run(options.against)) / Figure(cost));
  std::printf("\n");
  return Figure(cost);
}

void RunAll(const Options& options) {
  std::printf(
      "| case                   |   size |   CPU s |  wall s |    MB |  M instr |    floor | ratio "
      "|"
      " growth |%s\n",
      options.against.empty() ? "" : " other |");
  std::printf("|---|---|---|---|---|---|---|---|---|%s\n", options.against.empty() ? "" : "---|");
  for (const Case& item : Cases()) {
    if (std::string_view(item.name).find(options.only) == std::string_view::npos) continue;
    const double before = RunCase(item, options.size, 0, options);
    RunCase(item, options.size * 2, before, options);
  }
}

Options Read(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    const char* value = i + 1 < argc ? argv[i + 1] : nullptr;
    if (word == "--cpu-only") {
      options.instructions = false;
    } else if (word == "--size" && value != nullptr) {
      options.size = std::atoi(argv[++i]);
    } else if (word == "--only" && value != nullptr) {
      options.only = argv[++i];
    } else if (word == "--against" && value != nullptr) {
      options.against = fs::absolute(argv[++i]).string();
    } else {
      throw std::runtime_error(
          "merivane_bench [--size N] [--only PART_OF_A_NAME] [--against OTHER/merivane-batch] "
          "[--cpu-only]");
    }
  }
  return options;
}

}  // namespace
}  // namespace merivane::bench

int main(int argc, char** argv) try {
  using namespace merivane::bench;
  if (argc == 5 && std::string_view(argv[1]) == "floor") {
    if (*argv[2] != '\0') InsertFloor(argv[2], argv[3]);
    if (*argv[4] != '\0') SelectFloor(argv[4], "out.txt", "copy.txt");
  } else if (argc == 2 && std::string_view(argv[1]) == "xml") {
    MeasurePlanningXml();
  } else {
    RunAll(Read(argc, argv));
  }
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
