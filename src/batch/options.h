// What a command line says: the command and its options, as text, before any file is looked at.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "runtime/dates.h"

namespace merivane::batch {

using namespace runtime;

// Paths are UTF-8 as the shell gave them.
struct CommonOptions {
  std::optional<std::int32_t> codePage;
  std::optional<DateTime> today;
  std::string templateFile;
  std::string logFile;
  bool quiet = false;
  bool keepPartial = false;
};

struct ToProjectOptions {
  std::string model;
  std::string from;  // or a database with its project
  std::string project;
  std::string database;
  std::string mpx;
  std::string xml;
  bool overwrite = false;
  bool append = false;
  bool force = false;
  bool ownText = false;
  std::vector<std::string> choices;
};

struct ToModelOptions {
  std::string database;
  std::string project;
  std::string mpx;
  std::string xml;
  std::string interim;
  bool overwrite = false;
  std::string merge;
  bool complete = false;  // with merge
  bool noBackup = false;
  bool noProof = false;
  bool dryRun = false;
  bool json = false;  // with dryRun
  std::string output;
  bool force = false;
};

struct CheckOptions {
  std::string model;    // or with `against` a plan
  std::string against;  // database that holds the model of the plan
  std::string project;  // with it
  bool json = false;
  bool all = false;  // every note, not one of each group
};

struct ExportOptions {
  std::string database;
  std::string project;
  std::string xml;
  std::string mpx;
  std::string csv;
  std::string table = "tasks";  // of the CSV file
  bool force = false;
};

struct DiffOptions {
  std::string first;
  std::string second;
  std::vector<std::string> projects;  // of the databases among them, in order
  bool json = false;
};

struct ProjectsOptions {
  std::string database;
  bool json = false;
};

struct DrawOptions {
  std::string model;
  std::string database;
  std::string project;
  std::string scenario;
  std::string output;
  bool objects = false;
  bool force = false;
};

struct ChartArguments {
  std::string database;
  std::string project;
  std::string output;
  std::string against;  // planning XML, or a database with the project of the same number
  bool columns = false;
  bool force = false;
};

struct ReportOptions {
  std::string model;
  std::string output;
  std::vector<std::string> choices;
  bool objects = false;
  bool force = false;
};

enum class Command {
  kToProject,
  kToModel,
  kCheck,
  kExport,
  kDiff,
  kProjects,
  kDraw,
  kChart,
  kReport
};

struct CommandLine {
  Command command = Command::kToProject;
  CommonOptions common;
  ToProjectOptions toProject;
  ToModelOptions toModel;
  CheckOptions check;
  ExportOptions exported;
  DiffOptions diff;
  ProjectsOptions projects;
  DrawOptions draw;
  ChartArguments chart;
  ReportOptions report;
};

// Takes a command line apart. The exit status where that is all there is to do: for wrong usage,
// the help, the version.
std::optional<int> ReadCommandLine(const std::vector<std::string>& arguments, CommandLine& line,
                                   std::ostream& out, std::ostream& err);

}  // namespace merivane::batch
