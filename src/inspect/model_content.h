// The model of one project as its interim tables hold it, for two models to be held against each
// other. What a merge changes, and what is drawn, have their own: ModelSnapshot and
// pictures::ProcessModel.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "inspect/model_snapshot.h"
#include "neutraltext/modGlobal.h"

namespace merivane::inspect {

using namespace neutraltext;

// What a difference in a field is told by.
enum class FieldForm {
  kDays,    // "It takes 3 days instead of 2."
  kCount,   // "There are 3 of it instead of 2."
  kPhrase,  // "Its type is 'XOR' instead of 'OR'."
  kText,    // "It has another note."
};

struct ContentField {
  const char* word;
  FieldForm form;
  std::string text;  // Windows-1252
};

struct ModelContent {
  struct Entry {
    std::int32_t number = 0;
    std::string name;
    std::int32_t owner = 0;  // of a unit or a junction its scenario, of a scenario its unit
    std::vector<ContentField> fields;  // those of one kind in the same order
  };
  using Link = std::tuple<std::int32_t, std::int32_t, std::int32_t>;  // scenario, origin, end
  struct Use {
    std::string object;
    std::string quantity;
    std::string laborRule;
  };

  std::map<ElementKind, std::vector<Entry>> entries;
  std::multiset<Link> links;
  std::map<std::pair<std::int32_t, std::int32_t>, Use> uses;  // unit, object
};

// Everything but creators, dates, and places in the drawing. Errors of the database come up; a row
// without a number is passed over.
ModelContent ReadModelContent(Connection& connection, std::int32_t project);

// What became of the first in the second, in the words of a merge's changes. What has another
// number but the same name, in the same place, is the same; what has the same number in the same
// place but another name is told as renamed.
std::vector<MergeChange> DifferencesBetween(const ModelContent& before, const ModelContent& after);

}  // namespace merivane::inspect
