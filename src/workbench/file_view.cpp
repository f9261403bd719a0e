#include "workbench/file_view.h"

#include <algorithm>

namespace merivane::workbench {

namespace {

constexpr std::string_view kJunctionFigure = "junction-";

template <typename Fits>
std::optional<std::size_t> Find(const FileView& view, Fits fits) {
  const auto found = std::find_if(view.elements.begin(), view.elements.end(), fits);
  if (found == view.elements.end()) return std::nullopt;
  return static_cast<std::size_t>(found - view.elements.begin());
}

std::optional<std::size_t> ScenarioOfJunction(const FileView& view, std::string_view figure) {
  const std::string_view number = figure.substr(kJunctionFigure.size());
  for (std::size_t at = 0; at < view.model.scenarios.size(); ++at) {
    for (const ModelJunction& junction : view.model.scenarios[at].junctions) {
      if (std::to_string(junction.number) == number) return at;
    }
  }
  return std::nullopt;
}

}  // namespace

std::vector<Diagram> DrawScenarios(const FileView& view, std::optional<std::size_t> scenario,
                                   WorkListener& work) {
  DiagramOptions options;
  options.note = view.lines.empty() ? "" : view.lines.front();
  if (!scenario) return DrawDiagrams(view.model.scenarios, options, work);
  return DrawDiagrams({view.model.scenarios.at(*scenario)}, options, work);
}

std::optional<std::size_t> ElementOfFigure(const FileView& view,
                                           std::optional<std::size_t> scenario,
                                           std::string_view figure) {
  if (figure.empty()) return std::nullopt;
  const bool isJunction = figure.starts_with(kJunctionFigure);
  if (isJunction && !scenario) scenario = ScenarioOfJunction(view, figure);
  return Find(view, [&](const Element& element) {
    if (scenario && element.scenario != scenario) return false;
    if (isJunction) return scenario && element.kind == Element::Kind::kScenario;
    return element.figure == figure;
  });
}

std::optional<std::size_t> ElementOfBar(const FileView& view, std::string_view bar) {
  if (bar.empty()) return std::nullopt;
  return Find(view, [&](const Element& element) { return element.bar == bar; });
}

std::optional<std::size_t> SameElement(const Element& element, const FileView& view) {
  return Find(view, [&](const Element& other) {
    return other.kind == element.kind && other.number == element.number;
  });
}

}  // namespace merivane::workbench
