#include <cstring>

#include "layout_aside.h"
#include "runtime/helper_process.h"

namespace merivane::pictures {

using namespace runtime;

DoneAside RunAside(const std::vector<Graph>& graphs, std::chrono::steady_clock::time_point deadline,
                   WorkListener& work) {
  constexpr std::chrono::milliseconds kWait(20);
  HelperProcess child("merivane-layout.exe", {}, {.memory = kLayoutMemory, .apart = true},
                      Packed(graphs));
  if (!child.HasStarted()) {
    return {.why =
                "start Merivane again, or install it again: merivane-layout.exe can't be started"};
  }
  while (!child.HasEnded(kWait) && std::chrono::steady_clock::now() < deadline) work.Beat();
  child.Stop();
  const std::string sent = child.Output();
  std::string_view left = sent;
  return ReceiveLayouts(graphs.size(), [&left](void* data, std::size_t size) {
    if (size > left.size()) return false;
    std::memcpy(data, left.data(), size);
    left.remove_prefix(size);
    return true;
  });
}

}  // namespace merivane::pictures
