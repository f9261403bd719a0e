// What lies in modules beside the program, so that a run which draws nothing loads no library of
// pictures: a child process alone opens them, for what it has to do. For systems that fork; on
// Windows programs do it, merivane-layout.exe and merivane.exe.
#pragma once

#include <string>
#include <vector>

#include "layout_aside.h"

namespace merivane::pictures {

// Each module has one of those below under the name "merivane_module".
struct Module {
  const char* version;  // of the program that it belongs to
};

inline constexpr const char* kLayoutModule = "merivane-layout.so";

struct LayoutModule : Module {
  LayOutOne layOut;
};

inline constexpr const char* kRenderingModule = "merivane-rendering.so";

struct Sheet {
  std::string svg;
  double width = 0;  // dots, or points of a page
  double height = 0;
};

struct RenderingModule : Module {
  // Give the bytes of the file, or none: then `failure` tells why, UTF-8.
  std::string (*toPng)(const Sheet& sheet, std::string& failure);
  std::string (*toPdf)(const std::vector<Sheet>& pages, const std::string& title,
                       std::string& failure);
};

// Opens a module beside the program, which stays as long as the process. Error 57: it is missing,
// needs what is missing, or is of another version.
const Module& OpenModule(const std::string& name);

}  // namespace merivane::pictures
