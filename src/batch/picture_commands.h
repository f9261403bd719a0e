// The commands that draw: draw, chart and report.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "session.h"

namespace merivane {

struct DrawOptions {
  std::string model;
  std::string database;
  std::string project;
  std::string scenario;
  std::string output;
  bool objects = false;
  bool force = false;
};

// Adds `draw` and its own options.
CLI::App* AddDraw(CLI::App& app, DrawOptions& options);

int RunDraw(Session& session, const DrawOptions& options);

}  // namespace merivane
