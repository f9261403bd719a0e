#include "mpx_source.h"

namespace merivane::roundtrip {

PlanHead MpxSource::Open() {
  state_.progress.Begin("Reading the plan", CountLines(fileName_));
  OpenMpxFile(state_, fileName_);
  return ReadMpxHeader(state_, lines_);
}

}  // namespace merivane::roundtrip
