#include "layout_aside.h"
#include "modules.h"
#include "runtime/child_process.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

LayOutOne OpenLibrary() {
  return static_cast<const LayoutModule&>(OpenModule(kLayoutModule)).layOut;
}

}  // namespace

DoneAside RunAside(const std::vector<Graph>& graphs, std::chrono::steady_clock::time_point deadline,
                   WorkListener& work) {
  const auto layOut = [&](int pipe) {
    SendLayouts(graphs, OpenLibrary,
                [pipe](const void* data, std::size_t size) { SendOrExit(pipe, data, size); });
  };
  const ForkedChild child(layOut, {.memoryBytes = kLayoutMemory});
  return ReceiveLayouts(graphs.size(), [&](void* data, std::size_t size) {
    return child.Receive(data, size, deadline, [&work] { work.Beat(); });
  });
}

}  // namespace merivane::pictures
