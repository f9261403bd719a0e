// The process that lays out graphs for this one, so that a library which breaks there breaks
// nothing here: a copy of this process where the system has them, merivane-layout.exe on Windows.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layout.h"

namespace merivane::pictures {

inline constexpr std::size_t kLayoutMemory = std::size_t{2} << 30U;  // bytes that it may take

using LayOutOne = std::optional<Layout> (*)(const Graph& graph);

// As far as the process came: the layouts of the first graphs, or why it can lay out none.
struct DoneAside {
  std::vector<std::optional<Layout>> layouts = {};
  std::string why = {};
};

// Until it has ended or `deadline` comes. `work` is told meanwhile that it goes on. Error 57: no
// process can be started.
DoneAside RunAside(const std::vector<Graph>& graphs, std::chrono::steady_clock::time_point deadline,
                   WorkListener& work);

// There: sends each layout as soon as it is ready; where `open` ends in an error, its description.
void SendLayouts(const std::vector<Graph>& graphs, const std::function<LayOutOne()>& open,
                 const std::function<void(const void* data, std::size_t size)>& send);

// Here: `receive` fills the next bytes, and is false where no more come.
DoneAside ReceiveLayouts(std::size_t count,
                         const std::function<bool(void* data, std::size_t size)>& receive);

std::string Packed(const std::vector<Graph>& graphs);
std::vector<Graph> UnpackedGraphs(std::string_view bytes);

}  // namespace merivane::pictures
