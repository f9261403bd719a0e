// A merge tried in a copy, by the real merge, and the proof that its model gives the plan.
//
//   const MergePreview preview = PreviewMerge("plan.mpx", "model.mdb", 1);
//   if (!preview.merged) ...              // changes holds the stop alone, with its advice
//   for (const MergeChange& change : preview.changes) ...
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "inspect/model_snapshot.h"
#include "platform/desktop.h"
#include "reconcile/complete_merge.h"

namespace merivane::inspect {

using namespace platform;

// Whether a merged model gives the plan that came in.
struct MergeProof {
  // Sorted by kind and number; `planRow` where the plan has the element.
  std::vector<MergeChange> differences;
  std::string failure;  // why the merged text gives no plan; empty where it gives one
};

enum class Proof { kNone, kMade };

struct MergePreview {
  // All that stops the merge, what it passes over, and what it would change but for the stops.
  std::vector<MergeChange> changes;
  std::vector<Message> boxes;  // what the merge would show
  bool merged = false;
  std::optional<MergeProof> proof;  // of a merge, where it was asked for
};

// The preview in a line: how many changes or stops there are, and what the merge would show.
std::string SummaryOf(const MergePreview& preview);

// Sees the database on both sides of the merge that is tried. Work behind a stop begins anew, so
// that each may come several times; the last one counts. What is thrown ends the preview.
class MergeWitness {
 public:
  virtual ~MergeWitness() = default;
  virtual void OnBefore(Connection& model) = 0;
  // The numbers that units got in place of earlier ones. `before` of OnAfter has them already.
  virtual void OnNumbers(const std::map<std::int32_t, std::int32_t>& /*numbers*/) {}
  // Not where nothing can be merged.
  virtual void OnAfter(Connection& model, const ModelSnapshot& before,
                       const ModelSnapshot& after) = 0;
};

// Folds the plan into a copy of the interim database, and tells what that changed. Nothing of the
// user's is touched. Paths are UTF-8; a plan whose name ends in ".xml" is planning XML, any other
// MPX. Its progress is shown on `shown`, where the user may cancel it: RunCancelled comes up then.
// With the path of a template the proof is made; what keeps it from being made is its failure.
// Errors: a database that can't be copied, no temporary folder.
MergePreview PreviewMerge(const std::string& planPath, const std::string& interimPath,
                          std::int32_t project, Desktop* shown = nullptr,
                          const std::string& proofTemplate = {}, MergeWitness* witness = nullptr);

// The same of the complete merge, which nothing stops but what refuses the plan as a whole.
// `templatePath` is needed; the proof is made where it is asked for.
MergePreview PreviewCompleteMerge(const std::string& planPath, const std::string& interimPath,
                                  std::int32_t project, const std::string& templatePath,
                                  Proof proof, Desktop* shown = nullptr,
                                  MergeWitness* witness = nullptr);

// Of a complete merge: what it told that a model can't hold, how it found what it did, and what
// became of the model.
std::vector<MergeChange> ChangesOf(const reconcile::MergeResult& merge, const ModelSnapshot& before,
                                   const ModelSnapshot& after);

// What the merge that came in last passed over of the plan: predecessors that the plan doesn't
// have, under another summary task, of the kind start-to-finish. Errors of the database come up.
std::vector<MergeChange> PassedOver(Connection& connection, std::int32_t project);

// Reads the text that a merge wrote, translates it in memory, and holds that plan against the one
// in the work tables of `merged`. Writes nothing. Progress is shown on `shown`. Errors of the
// database and of the template come up; a text that can't be read, or not be translated, is the
// proof's failure.
MergeProof ProveMerge(Connection& merged, std::int32_t project, const std::string& textPath,
                      const std::string& templatePath, Desktop* shown = nullptr);

// The same of a preview, which an error doesn't end: it is the proof's failure.
MergeProof ProvePreview(Connection& merged, std::int32_t project, const std::string& textPath,
                        const std::string& templatePath, Desktop* shown);

// In a sentence: that nothing is lost, how much is, or why that isn't known.
std::string SummaryOf(const MergeProof& proof);

}  // namespace merivane::inspect
