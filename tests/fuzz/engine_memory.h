// Memory for SQLite, which asks for hundreds of pieces a case that the sanitizer would guard one by
// one for nothing: the library isn't instrumented.
#pragma once

namespace merivane::fuzz {

// From now on SQLite's pieces come from lists of their sizes. What it has given back can't be read
// by instrumented code until the piece is given out again, the longest free first. REQUIRES: SQLite
// hasn't been used yet, and is used by one thread.
void KeepEngineMemory();

}  // namespace merivane::fuzz
