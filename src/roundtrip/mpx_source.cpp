#include "mpx_source.h"

namespace merivane::roundtrip {

PlanHead MpxSource::Open() {
  OpenMpxFile(state_, fileName_);
  return ReadMpxHeader(state_, lines_);
}

}  // namespace merivane::roundtrip
