// Answers the question which of several scenarios or decompositions to take.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "session.h"
#include "translator/multi.h"

namespace merivane::batch {

using namespace translator;

class ScenarioChooser {
 public:
  // `choices` (UTF-8) are the answers, in the order of the questions.
  ScenarioChooser(Session& session, const std::vector<std::string>& choices)
      : session_(session), choices_(choices.begin(), choices.end()) {}

  // Takes the next choice; where it is none of those offered, says so and cancels the form, which
  // ends the translation.
  void Answer(multi& form);

  // The first line of the question that had no answer (Windows-1252); empty without one.
  const std::string& OpenQuestion() const { return openQuestion_; }

 private:
  std::optional<std::size_t> NextChoice(const std::vector<std::string>& names);

  Session& session_;
  std::deque<std::string> choices_;
  std::string openQuestion_;
};

}  // namespace merivane::batch
