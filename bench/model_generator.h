// Models of any size in the text form that the reader takes, with every kind of element.
#pragma once

#include <string>

namespace merivane::bench {

// `occurrences` process occurrences (at most 9,000: numbers of junctions have four digits) in
// scenarios of twenty, decomposed four to a scenario; with junctions, object occurrences, facts.
std::string GenerateModel(int occurrences);

// The same with an object for each occurrence, all of one name.
std::string GenerateObjectsOfOneName(int occurrences);

}  // namespace merivane::bench
