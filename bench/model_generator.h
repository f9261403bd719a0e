// Models of any size in the text form that the reader takes, with every kind of element.
#pragma once

#include <string>

namespace merivane::bench {

// `occurrences` process occurrences (at most 16,000: each uses two objects, and a plan holds 32,767
// rows of a kind), one in 21 of them in the first scenario and decomposed into twenty others; with
// junctions, object occurrences, facts. Two levels: what `to-model --database` writes whole.
std::string GenerateModel(int occurrences);

// The same with an object for each occurrence, all of one name.
std::string GenerateObjectsOfOneName(int occurrences);

// Two scenarios of half as many each, which a translation asks to choose from.
std::string GenerateChoice(int occurrences);

// One scenario of so many units (an even number, at most 4,000) in a shape that a layout can trip
// over.
enum class Shape { kChain, kRing, kHub, kLadder, kNestedFans };
std::string GenerateShape(Shape shape, int units);

}  // namespace merivane::bench
