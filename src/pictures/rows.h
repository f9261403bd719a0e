// A layout that is too wide, in rows below each other.
#pragma once

#include "layout.h"

namespace merivane::pictures {

// Breaks a wide layout where few edges cross. An edge that is broken, and one without a curve, gets
// a continuation, numbered onwards from `number`.
void BreakIntoRows(const Graph& graph, Layout& layout, int& number);

}  // namespace merivane::pictures
