// Writing and reading planning XML, and the dates of a plan.
#pragma once

namespace merivane::bench {

// Prints a table: plans of 1,000 to 16,000 tasks beside pugixml building and saving the same tree,
// and parsing alone.
void MeasurePlanningXml();

}  // namespace merivane::bench
