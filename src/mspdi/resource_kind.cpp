#include <string_view>

#include "mspdi/plan_reader.h"

namespace merivane::mspdi {

namespace {

constexpr std::string_view kMaterial = "Resource kind: Material";
constexpr std::string_view kCost = "Resource kind: Cost";
constexpr std::string_view kLineEnd = "\r\n";

}  // namespace

KindAndText TakeKind(const std::string& glossary) {
  const std::size_t end = glossary.find_first_of("\r\n");
  const std::string_view line = std::string_view(glossary).substr(0, end);
  KindAndText found;
  if (line == kCost) {
    found.kind = ResourceKind::kCost;
  } else if (line == kMaterial) {
    found.kind = ResourceKind::kMaterial;
  } else if (line.starts_with(kMaterial) && line.substr(kMaterial.size()).starts_with(" (") &&
             line.ends_with(')')) {
    found.kind = ResourceKind::kMaterial;
    found.unit = line.substr(kMaterial.size() + 2);
    found.unit.pop_back();
  } else {
    found.text = glossary;
    return found;
  }
  if (end == std::string::npos) return found;
  const bool pair = glossary.compare(end, kLineEnd.size(), kLineEnd) == 0;
  found.text = glossary.substr(end + (pair ? kLineEnd.size() : 1));
  return found;
}

std::string WithKind(const KindAndText& resource) {
  if (resource.kind == ResourceKind::kWork) return resource.text;
  std::string glossary(resource.kind == ResourceKind::kCost ? kCost : kMaterial);
  if (!resource.unit.empty()) glossary += " (" + resource.unit + ")";
  if (!resource.text.empty()) glossary += std::string(kLineEnd) + resource.text;
  return glossary;
}

}  // namespace merivane::mspdi
