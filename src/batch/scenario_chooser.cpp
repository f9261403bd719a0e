#include "scenario_chooser.h"

#include <algorithm>

#include "runtime/code_page.h"

namespace merivane::batch {

void ScenarioChooser::Answer(multi& form) {
  const auto chosen = NextChoice(form.List1);
  if (chosen) {
    const std::string name = form.List1[*chosen];
    session_.log.AddChooser(form.Label1, form.Label2, form.List1, name);
    form.Choose(*chosen);
    return;
  }
  session_.log.AddChooser(form.Label1, form.Label2, form.List1, std::nullopt);
  openQuestion_ = form.Label1;
  std::string names;
  for (const std::string& name : form.List1) names += "\n  " + ToUtf8(name);
  session_.Say(ToUtf8(form.Label1) + " Say which with --choose NAME:" + names);
  form.Command2();
}

std::optional<std::size_t> ScenarioChooser::NextChoice(const std::vector<std::string>& names) {
  if (choices_.empty()) return std::nullopt;
  const std::string wanted = FromUtf8(choices_.front());
  choices_.pop_front();
  const auto found = std::find(names.begin(), names.end(), wanted);
  if (found == names.end()) return std::nullopt;
  return static_cast<std::size_t>(found - names.begin());
}

}  // namespace merivane::batch
