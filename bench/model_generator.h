// Models of any size in the text form that the reader takes, with every kind of element.
#pragma once

#include <string>

namespace merivane::bench {

// `occurrences` process occurrences (at most 9,000: numbers of junctions have four digits) in
// scenarios of twenty, decomposed four to a scenario; with junctions, object occurrences, facts.
std::string GenerateModel(int occurrences);

// A model whose size is mostly block text (glossaries, notes), about `megabytes` large.
std::string GenerateBlockText(int megabytes);

}  // namespace merivane::bench
