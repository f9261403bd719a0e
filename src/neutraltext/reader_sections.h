// The sections of a Neutral Text file in the order in which the reader walks them. Each starts at
// gLine and leaves there the line at which the next one goes on; failures come up to ReadModel.
#pragma once

#include "neutraltext/modGlobal.h"

namespace merivane::neutraltext {

void ReadSummary(ModelToProject& state);

void ReadProcessPool(ModelToProject& state);
void ReadObjectPool(ModelToProject& state);
void ReadStatePool(ModelToProject& state);
void ReadFactPool(ModelToProject& state);
void ReadPropertyPool(ModelToProject& state);
void ReadRemainingPools(ModelToProject& state);

void ReadScenarios(ModelToProject& state);
void ReadOccurrences(ModelToProject& state);
void ReadObjectOccurrences(ModelToProject& state);
void ReadJunctions(ModelToProject& state);
void ReadLinks(ModelToProject& state);

// The current line holds "OSTN List".
void ReadOstnList(ModelToProject& state);

// Column and row of an occurrence or junction, from the current line and, where that is a column
// line, the next one. A value that isn't numeric leaves the variable as it was.
void ReadPlacement(ModelToProject& state);

}  // namespace merivane::neutraltext
