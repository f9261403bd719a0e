// How far a process goes that reads an Access file aside, and what is told of one that failed.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "runtime/file_names.h"

namespace merivane::store {

inline constexpr const char* kNoProcess = "no process can be started";
inline constexpr const char* kDamaged = "it is damaged";
inline constexpr const char* kEndless = "reading it never ends";

// Far above what whole files need: a slow machine loads several megabytes a second.
struct AccessLimits {
  std::chrono::seconds cpu;
  std::chrono::seconds wall;
  std::uintmax_t bytes;  // of the copy
};

inline AccessLimits LimitsFor(const std::string& path) {
  std::error_code ignored;
  const std::uintmax_t size = std::filesystem::file_size(runtime::PathOf(path), ignored);
  const std::uintmax_t megabytes = ignored ? 0 : size >> 20U;
  return {.cpu = std::chrono::seconds(10 + megabytes),
          .wall = std::chrono::seconds(60 + 4 * megabytes),
          .bytes = (64 + 8 * megabytes) << 20U};
}

}  // namespace merivane::store
