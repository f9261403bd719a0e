#include "merge_report.h"

#include <algorithm>

#include "printable.h"
#include "runtime/code_page.h"

namespace merivane::batch {

using namespace runtime;

namespace {

using Json = nlohmann::ordered_json;
using inspect::ChangeKind;
using inspect::MergeChange;

const char* WordOf(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::kAdded:
      return "added";
    case ChangeKind::kChanged:
      return "changed";
    case ChangeKind::kRemoved:
      return "removed";
    case ChangeKind::kKept:
      return "kept";
    case ChangeKind::kNotTaken:
      return "not taken";
    case ChangeKind::kDiffers:
      return "differs";
    case ChangeKind::kStop:
      break;
  }
  return "stop";
}

std::string Line(const MergeChange& change) {
  std::string text = std::string(WordOf(change.kind)) + ": ";
  if (change.planRow) {
    text += "row " + std::to_string(*change.planRow) +
            (change.element.kind == "resource" ? " of the plan's resources, " : " of the plan, ");
  }
  text += Described(change.element) + ": " + change.sentence;
  if (!change.advice.empty()) text += " " + change.advice;
  return PrintableLine(ToUtf8(text)) + '\n';
}

// What is done is always counted, what isn't only where there is some.
std::string Counts(const std::vector<MergeChange>& changes) {
  std::string text;
  for (const ChangeKind kind : {ChangeKind::kStop, ChangeKind::kAdded, ChangeKind::kChanged,
                                ChangeKind::kRemoved, ChangeKind::kKept, ChangeKind::kNotTaken}) {
    const auto count = std::count_if(changes.begin(), changes.end(),
                                     [&](const MergeChange& each) { return each.kind == kind; });
    const bool isDone = kind != ChangeKind::kStop && kind != ChangeKind::kNotTaken;
    if (count == 0 && !isDone) continue;
    text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + WordOf(kind);
    if (kind == ChangeKind::kStop && count > 1) text += 's';
  }
  return text + '\n';
}

Json JsonOf(const inspect::MergeProof& proof) {
  return {{"agrees", proof.failure.empty() && proof.differences.empty()},
          {"failure", proof.failure.empty() ? Json(nullptr) : Json(ToUtf8(proof.failure))},
          {"differences", ChangesJson(proof.differences)}};
}

}  // namespace

nlohmann::ordered_json ChangesJson(const std::vector<MergeChange>& changes) {
  Json list = Json::array();
  for (const MergeChange& change : changes) {
    const auto& element = change.element;
    list.push_back({{"change", WordOf(change.kind)},
                    {"planRow", change.planRow ? Json(*change.planRow) : Json(nullptr)},
                    {"element",
                     {{"kind", element.kind},
                      {"number", element.number ? Json(*element.number) : Json(nullptr)},
                      {"name", ToUtf8(element.name)}}},
                    {"sentence", ToUtf8(change.sentence)},
                    {"advice", ToUtf8(change.advice)}});
  }
  return list;
}

std::string ChangeLines(const std::vector<MergeChange>& changes) {
  std::string text;
  for (const MergeChange& change : changes) text += Line(change);
  return text;
}

std::string ChangesText(const std::vector<MergeChange>& changes) {
  return ChangeLines(changes) + Counts(changes);
}

inspect::MergeProof WithComplete(inspect::MergeProof proof) {
  for (MergeChange& difference : proof.differences) {
    if (difference.completeKeeps) difference.advice += " --complete keeps it.";
  }
  return proof;
}

std::string ProofText(const inspect::MergeProof& proof) {
  const std::string summary = PrintableLine(ToUtf8(SummaryOf(proof))) + '\n';
  return proof.failure.empty() ? ChangeLines(proof.differences) + summary : "proof: " + summary;
}

void PrintPreviewJson(std::ostream& out, const inspect::MergePreview& preview,
                      const mspdi::UntakenRows& untaken) {
  Json boxes = Json::array();
  for (const platform::Message& box : preview.boxes) boxes.push_back(ToUtf8(box.text));
  Json left = Json::object();
  for (std::size_t kind = 0; kind < mspdi::kUntakenKinds; ++kind) {
    const auto& rows = untaken.Of(static_cast<mspdi::Untaken>(kind));
    if (!rows.empty()) left[mspdi::KeyOf(static_cast<mspdi::Untaken>(kind))] = rows;
  }
  const Json report = {{"merges", preview.merged},
                       {"changes", ChangesJson(preview.changes)},
                       {"messages", boxes},
                       {"notTaken", left},
                       {"proof", preview.proof ? JsonOf(*preview.proof) : Json(nullptr)}};
  out << PrintableJson(report) << '\n';
}

}  // namespace merivane::batch
