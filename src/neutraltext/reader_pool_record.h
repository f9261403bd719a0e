// What the records of the process and the object pool have in common.
#pragma once

#include <string>

#include "reader_lines.h"

namespace merivane::neutraltext {

// The head of an element at the current line: number, name, creator, the two dates and the blocks
// up to the source list.
void ReadPoolHead(ModelToProject& state, void (*validateName)(Desktop&, const std::string&));

// The three blocks of the elaboration.
void ReadPoolElaboration(ModelToProject& state);

}  // namespace merivane::neutraltext
