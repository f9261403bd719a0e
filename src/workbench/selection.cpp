#include "workbench/selection.h"

namespace merivane::workbench {

std::optional<std::size_t> Selection::Find(const Step& step) const {
  Element element;
  element.kind = step.kind;
  element.number = step.number;
  return SameElement(element, *view_);
}

void Selection::Show(const FileView& view) {
  view_ = &view;
  std::vector<Step> kept;
  std::size_t at = 0;
  for (std::size_t step = 0; step < way_.size(); ++step) {
    if (Find(way_[step]) && (kept.empty() || kept.back() != way_[step])) kept.push_back(way_[step]);
    if (step + 1 == at_) at = kept.size();
  }
  way_ = std::move(kept);
  at_ = at;
}

std::optional<std::size_t> Selection::Chosen() const {
  return at_ == 0 ? std::nullopt : Find(way_[at_ - 1]);
}

bool Selection::Choose(std::size_t element) {
  const Element& chosen = view_->elements.at(element);
  const Step step{chosen.kind, chosen.number};
  if (at_ > 0 && way_[at_ - 1] == step) return false;
  way_.resize(at_);
  way_.push_back(step);
  at_ = way_.size();
  return true;
}

bool Selection::Back() {
  if (CanGoBack()) return --at_, true;
  return false;
}

bool Selection::Forward() {
  if (CanGoForward()) return ++at_, true;
  return false;
}

bool Selection::Into() {
  const auto chosen = Chosen();
  if (!chosen) return false;
  const auto& below = view_->elements[*chosen].decomposed;
  if (!below) return false;
  const std::int32_t number = view_->model.scenarios[*below].number;
  const auto scenario = Find({Element::Kind::kScenario, number});
  return scenario && Choose(*scenario);
}

bool Selection::Out() {
  const auto chosen = Chosen();
  if (!chosen || !view_->elements[*chosen].scenario) return false;
  const Element& element = view_->elements[*chosen];
  const ModelScenario& scenario = view_->model.scenarios[*element.scenario];
  const auto above = element.kind == Element::Kind::kScenario
                         ? Find({Element::Kind::kUnit, scenario.parent})
                         : Find({Element::Kind::kScenario, scenario.number});
  return above && Choose(*above);
}

}  // namespace merivane::workbench
