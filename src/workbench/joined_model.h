// A model before and behind a merge, in one.
#pragma once

#include "inspect/model_snapshot.h"
#include "pictures/process_model.h"

namespace merivane::workbench {

using namespace inspect;
using namespace pictures;

// The model behind the merge, with what is gone, and with new units that the merge has only as
// tasks of the plan. Units bear their earlier name behind the new one, and links their mark.
ProcessModel Joined(const ProcessModel& before, ProcessModel after,
                    const ModelSnapshot& snapshotBefore, const ModelSnapshot& snapshotAfter);

}  // namespace merivane::workbench
