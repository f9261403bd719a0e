// Clock, temporary files and raw SQLite for the measurements.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace merivane::bench {

constexpr int kSizes[] = {1000, 2000, 4000, 8000};
constexpr int kRuns = 3;  // the fastest is quoted

double Seconds(const std::function<void()>& work);

// Runs `work` in a child process; its peak resident memory in MiB.
double PeakMemory(const std::function<void()>& work);

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  std::string File(const std::string& name) const { return (path_ / name).string(); }
  std::string TemplateCopy(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

void WriteFile(const std::string& path, const std::string& content);
void Execute(const std::string& database, const std::string& sql);

// All rows of all tables of `from` inserted by prepared statements in one transaction into `into`,
// which holds the same tables; seconds for the inserting alone.
double InsertFloor(const std::string& from, const std::string& into);

// Every row and column of the MSP_ tables read by plain selects, and the lines of `text` printed to
// `copy`; seconds.
double SelectAndPrintFloor(const std::string& database, const std::string& text,
                           const std::string& copy);

void MeasureModelToPlan();
void MeasurePlanToModel();
void MeasureMpxToModel();
void MeasurePlanningXml();

}  // namespace merivane::bench
