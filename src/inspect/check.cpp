#include "inspect/check.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "model_checks.h"
#include "reading.h"
#include "runtime/text_files.h"
#include "scratch_folder.h"
#include "trial.h"

namespace merivane::inspect {

namespace {

constexpr int kMostRepairs = 20;

std::vector<std::string> LinesOf(const std::string& path) {
  std::vector<std::string> lines;
  TextFiles files;
  files.OpenForInput(1, path);
  while (!files.AtEnd(1)) lines.push_back(files.ReadLine(1));
  return lines;
}

void WriteLines(const std::string& path, const std::vector<std::string>& lines) {
  TextFiles files;
  files.OpenForOutput(1, path);
  for (const std::string& line : lines) files.Print(1, line);
  files.Close(1);
}

// Each word in front of a bracket becomes 0.
std::string WithoutNumbers(std::string_view field) {
  const std::size_t end = std::min(field.find('('), field.size());
  std::string text;
  for (std::size_t i = 0; i < end; ++i) {
    const bool isMark = field[i] == ' ' || field[i] == '#';
    if (isMark) {
      text += field[i];
    } else if (text.empty() || text.back() != '0') {
      text += '0';
    }
  }
  return text.empty() ? "0" : text.append(field.substr(end));
}

// A refused name loses its characters wherever it stands; a number that is none becomes 0.
void Repair(std::vector<std::string>& lines, const Stop& stop) {
  std::string& line = lines[stop.line - 1];
  if (stop.kind == Stop::Kind::kNumber) {
    line.replace(stop.start, std::string::npos, WithoutNumbers(line.substr(stop.start)));
    return;
  }
  const std::string name = line.substr(stop.start, stop.length);
  std::string harmless = name;
  std::erase(harmless, '"');
  std::erase(harmless, ',');
  for (std::string& each : lines) {
    for (std::size_t at = 0; (at = each.find(name, at)) != std::string::npos;) {
      each.replace(at, name.size(), harmless);
      at += harmless.size();
    }
  }
}

bool CanBeRepaired(const Stop& stop) {
  return stop.kind == Stop::Kind::kName || stop.kind == Stop::Kind::kNumber;
}

bool HasError(const std::vector<Finding>& findings) {
  return std::any_of(findings.begin(), findings.end(),
                     [](const Finding& finding) { return finding.severity == Severity::kError; });
}

class Check {
 public:
  Check(std::string modelPath, std::string templatePath)
      : path_(std::move(modelPath)), templatePath_(std::move(templatePath)) {}

  std::vector<Finding> Run() {
    Read();
    std::size_t lastLine = 0;
    for (int repair = 0; repair < kMostRepairs && CanBeRepaired(StoppedAt()); ++repair) {
      if (StoppedAt().line <= lastLine) break;
      lastLine = StoppedAt().line;
      numbersAreKnown_ = numbersAreKnown_ && StoppedAt().kind != Stop::Kind::kNumber;
      findings_.push_back(*text_->Result().StopFinding());
      std::vector<std::string> lines = LinesOf(path_);
      Repair(lines, StoppedAt());
      path_ = folder_.Path("model.txt");
      WriteLines(path_, lines);
      Read();
    }
    const std::vector<Finding>& read = text_->Result().Findings();
    findings_.insert(findings_.end(), read.begin(), read.end());
    if (StoppedAt().kind == Stop::Kind::kNone && numbersAreKnown_) CheckElements();
    std::stable_sort(findings_.begin(), findings_.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    return std::move(findings_);
  }

 private:
  void Read() { text_.emplace(path_, templatePath_); }
  const Stop& StoppedAt() const { return text_->Result().StoppedAt(); }

  void CheckElements() {
    const Model& model = text_->Result().GetModel();
    CheckNumbers(model, findings_);
    CheckNames(model, findings_);
    CheckObjects(model, findings_);
    CheckLinks(model, findings_);
    CheckScenarios(model, findings_);
    if (!IsTrialNeeded(model)) return;
    const std::vector<Finding> trial = TryTranslation(*text_, !HasError(findings_));
    findings_.insert(findings_.end(), trial.begin(), trial.end());
  }

  std::string path_;
  std::string templatePath_;
  ScratchFolder folder_;
  std::optional<ReadModelText> text_;
  std::vector<Finding> findings_;
  bool numbersAreKnown_ = true;  // none was put in the place of another
};

}  // namespace

std::vector<Finding> CheckModel(const std::string& modelPath, const std::string& templatePath) {
  TextFiles().OpenForInput(1, modelPath);  // tells why it can't be read
  return Check(modelPath, templatePath).Run();
}

}  // namespace merivane::inspect
