// The commands that draw: draw, chart and report.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "session.h"

namespace merivane::batch {

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

// Each adds a command and its own options.
CLI::App* AddDraw(CLI::App& app, DrawOptions& options);
CLI::App* AddChart(CLI::App& app, ChartArguments& options);
CLI::App* AddReport(CLI::App& app, ReportOptions& options);

int RunDraw(Session& session, const DrawOptions& options);
int RunChart(Session& session, const ChartArguments& options);
int RunReport(Session& session, const ReportOptions& options);

// True, with a word, for a name that is no picture's, that is one of the sources, or that stands
// already without --force.
bool PictureIsRefused(Session& session, std::vector<NamedFile> files, const std::string& output,
                      bool force);
// "clinic.txt, Nov 26, 2026, Merivane 3.1.0" in Windows-1252: the source, today and the program.
std::string FootOf(const Session& session, const std::string& source);
// A word where the picture had to be made smaller by `factor`, as WritePictures tells it.
void SayIfSmall(const Session& session, const std::string& output, double factor);

}  // namespace merivane::batch
