// The queue that the walks through junctions share. A walk goes on while it finds entries; the
// queue has no memory of what it held, so a junction on two ways is walked twice.
#pragma once

#include "pass.h"
#include "runtime/run_time_error.h"

namespace merivane::translator {

inline void StartJunctionQueue(ModelToProject& state, std::string first) {
  state.junctionQueueTop = 0;
  state.junctionQueue[0] = std::move(first);
}

// Error 9 beyond the queue's bound, which is how a walk in a circle ends.
inline void QueueJunction(ModelToProject& state, std::string entry) {
  ++state.junctionQueueTop;
  if (state.junctionQueueTop > kJunctionQueueBound) throw RunTimeError(kSubscriptOutOfRange);
  state.junctionQueue[static_cast<std::size_t>(state.junctionQueueTop)] = std::move(entry);
}

}  // namespace merivane::translator
