// The options of a command line, as text, before any file is looked at.
#pragma once

#include <cstdint>
#include <optional>
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

}  // namespace merivane::batch
