// What is chosen in an opened file, and the way that led there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "workbench/file_view.h"

namespace merivane::workbench {

// One element is chosen everywhere, or none. The view outlives this, or is replaced by Show.
class Selection {
 public:
  explicit Selection(const FileView& view) : view_(&view) {}

  // The view of the same file, read or translated again: what is in it no more is forgotten.
  void Show(const FileView& view);

  std::optional<std::size_t> Chosen() const;

  // Each gives whether something else is chosen now. What was chosen in front of a step back comes
  // again by a step forward, until something is chosen anew.
  bool Choose(std::size_t element);
  bool Back();
  bool Forward();
  bool Into();  // from a unit to the scenario that decomposes it
  bool Out();   // from a unit to its scenario, from there to the unit that it decomposes

  bool CanGoBack() const { return at_ > 1; }
  bool CanGoForward() const { return at_ < way_.size(); }

 private:
  struct Step {
    Element::Kind kind;
    std::int32_t number;
    bool operator==(const Step&) const = default;
  };
  std::optional<std::size_t> Find(const Step& step) const;

  const FileView* view_;
  std::vector<Step> way_;
  std::size_t at_ = 0;  // steps up to the chosen one
};

}  // namespace merivane::workbench
