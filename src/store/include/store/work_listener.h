// How work that takes its time tells that it goes on.
#pragma once

#include <cstdint>
#include <string>

namespace merivane::store {

// Nobody listens to this one. What a listener throws leaves the work.
class WorkListener {
 public:
  virtual ~WorkListener() = default;
  // A part begins, of `total` steps; 0 where that isn't known.
  virtual void Begin(const std::string& /*stage*/, std::int64_t /*total*/) {}
  virtual void Step() {}
  virtual void Beat() {}  // without a step
};

}  // namespace merivane::store
