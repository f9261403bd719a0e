// What a resource is, as the glossary of its object tells it: a model has no other place for it.
#pragma once

#include <string>

namespace merivane::mspdi {

enum class ResourceKind { kWork, kMaterial, kCost };

// A glossary taken apart. Texts are Windows-1252.
struct KindAndText {
  ResourceKind kind = ResourceKind::kWork;
  std::string unit;  // of a material: "t"; may be empty
  std::string text;  // what stands behind the first line
};

// A glossary whose first line is "Resource kind: Material (t)" or "Resource kind: Cost"; any other
// is of a resource that works, and all text.
KindAndText TakeKind(const std::string& glossary);

// The text with that line in front; just the text of a resource that works.
std::string WithKind(const KindAndText& resource);

}  // namespace merivane::mspdi
