// The edge at which whatever is thrown becomes a word and an exit status.
#pragma once

#include <ostream>
#include <string>

#include "batch/batch.h"

namespace merivane::batch {

// What the exception that is being handled says, UTF-8; empty for an end that a box has told.
std::string FailureText();

// Tells on `err` the exception that is being handled. Gives kFailed.
int TellFailure(std::ostream& err) noexcept;

// What the step gives; kFailed, with a word, where it throws.
template <typename Step>
int Guarded(std::ostream& err, const Step& step) noexcept {
  try {
    return step();
  } catch (...) {
    return TellFailure(err);
  }
}

}  // namespace merivane::batch
