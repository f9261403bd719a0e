#include "reading.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include "machine_fault.h"
#include "runtime/conversions.h"
#include "runtime/file_names.h"
#include "runtime/text.h"
#include "store/connection.h"

namespace merivane::inspect {

namespace {

constexpr const char* kNotReadOn =
    " Nothing behind this line was read, so the rest of the model is not checked.";

constexpr const char* kChooseModel = "Choose a model text that was exported from Celvar.";

// The part of a line behind its label that FieldAfterBlanks would take, uncut.
std::string_view Behind(std::string_view line, std::size_t start) {
  const std::size_t blanks = Find(line, "  ", start);
  return blanks == 0 ? std::string_view() : line.substr(blanks + 1);
}

// 0 for a file that can't be asked, such as a pipe.
std::uintmax_t SizeOf(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(PathOf(path), error);
  return error ? 0 : size;
}

std::string Label(std::string_view line, std::string_view field) {
  return Trim(line.substr(0, line.size() - field.size()));
}

}  // namespace

void Reading::Add(Severity severity, std::string sentence, std::string advice) {
  findings_.push_back({severity, std::max<std::size_t>(ends_.size(), 1), CurrentElement(),
                       std::move(sentence), std::move(advice)});
}

// What is known of an element whose row isn't written yet.
ElementName Reading::CurrentElement() const {
  if (elementLine_ == 0) return {};
  if (!model_.places.empty() && model_.places.back().line == elementLine_) {
    return NameOf(model_.places.back());
  }
  ElementName name{KindName(element_), std::nullopt, ""};
  const std::string_view head = Line(elementLine_);
  const std::string text = Trim(head.substr(head.find_last_of(" #") + 1));
  if (IsNumericText(text) && text.size() < 10) name.number = ToInt32(text);
  const bool named = element_ == Element::kProcess || element_ == Element::kObject ||
                     element_ == Element::kFact || element_ == Element::kScenario ||
                     element_ == Element::kUnit;
  if (named && elementLine_ < ends_.size()) {
    name.name = std::string(Behind(Line(elementLine_ + 1), element_ == Element::kUnit ? 7 : 3));
  }
  return name;
}

std::string_view Reading::Line(std::size_t number) const {
  if (number == 0 || number > ends_.size()) return {};  // nothing was read, or not yet
  const std::size_t from = number < 2 ? 0 : ends_[number - 2];
  return std::string_view(text_).substr(from, ends_[number - 1] - from);
}

void Reading::OnLine(const std::string& line) {
  text_ += line;
  ends_.push_back(text_.size());
  if (searched_ && line == *searched_) EndSearch();
}

const std::string* Reading::Keyword(std::string_view keyword) {
  const auto known = keywords_.find(keyword);
  return &*(known == keywords_.end() ? keywords_.emplace(keyword).first : known);
}

void Reading::OnSearch(std::string_view keyword) {
  searched_ = Keyword(keyword);
  searchedFrom_ = ends_.size();
  if (Line(ends_.size()) == *searched_) EndSearch();
}

void Reading::EndSearch() {
  // The search often starts on the keyword that the one before ended at.
  const std::size_t from = searchedFrom_ == foundAt_ ? searchedFrom_ + 1 : searchedFrom_;
  if (ends_.size() > from && !cut_) ranges_.push_back({searched_, from, ends_.size()});
  foundAt_ = ends_.size();
  searched_ = nullptr;
  cut_ = false;
}

void Reading::OnRecord(Element element, std::string_view listEnd) {
  if (element == Element::kJunctionFact) return;  // a line of the junction's list
  searched_ = nullptr;
  if (element == Element::kObjectUse) return;  // tells of its unit
  element_ = element;
  elementLine_ = ends_.size();
  listEnd_ = listEnd;
}

std::string_view Reading::FieldText() const {
  return fieldLine_ == 0 ? std::string_view() : Behind(Line(fieldLine_), fieldStart_);
}

void Reading::OnField(std::size_t start, std::size_t length) {
  constexpr std::size_t kNumberLength = 4;
  fieldLine_ = ends_.size();
  fieldStart_ = start;
  fieldLength_ = length;
  const std::string_view field = FieldText();
  if (field.size() <= length) return;
  const std::string kept(field.substr(0, length));
  if (length == kNumberLength) {
    if (!IsNumericText(kept)) return;  // told as no number
    Add(Severity::kError,
        "The number " + std::string(field) + " has more than four digits; it is read as " + kept +
            ".",
        "Number this element, and all that refer to it, with at most four digits.");
    return;
  }
  const std::string label = Label(Line(fieldLine_), field);
  Add(Severity::kError,
      "The text behind '" + label + "' has " + std::to_string(field.size()) +
          " characters; only the first " + std::to_string(length) + " are read.",
      "Shorten it to " + std::to_string(length) + " characters.");
}

void Reading::OnCut(std::size_t length) {
  Add(Severity::kError,
      "The text that ends here is longer than " + std::to_string(length) +
          " characters, and what is beyond them is lost.",
      "Shorten the text to " + std::to_string(length) + " characters.");
  cut_ = true;
}

void Reading::OnMessage(const Message& message) {
  const std::string& text = message.text;
  if (text.starts_with("Merivane requires")) {
    StopAtName(text);
    return;
  }
  const auto is = [&](int error) { return text == ErrorText(error) + std::string(kCrLf); };
  if (is(kTypeMismatch) || is(kOverflow)) {
    StopAtNumber(text, is(kOverflow));
  } else if (is(kInvalidProcedureCall)) {
    StopAtMark();
  } else if (is(kInputPastEndOfFile)) {
    StopAtEnd();
  } else if (text.starts_with("Celvar input text file is not valid")) {
    Add(Severity::kError, "The first line doesn't hold 'Dunmar Neutral Text', so this is no model.",
        kChooseModel);
    foreign_ = true;
  } else if (ends_.empty()) {
    Add(Severity::kError, "The text is empty.", kChooseModel);
    StopHere(Stop::Kind::kFinal);
  } else {
    Add(Severity::kError, "The reader stops here: " + Trim(text), "Mend the text here.");
    StopHere(Stop::Kind::kFinal);
  }
}

void Reading::StopHere(Stop::Kind kind) {
  const std::string_view field = FieldText();
  stop_ = {kind, ends_.size(), 0, std::min(field.size(), fieldLength_)};
  if (fieldLine_ == ends_.size()) stop_.start = Line(fieldLine_).size() - field.size();
  stopFinding_ = findings_.back();
}

// The box holds the rule and, behind two blanks, which name is meant.
void Reading::StopAtName(const std::string& text) {
  Add(Severity::kError, text.substr(0, text.find("  ")),
      "Change the name, here and wherever it is used.");
  StopHere(Stop::Kind::kName);
}

// Each element begins with its word and its number.
bool Reading::StartsWithItsWord() const {
  std::string word = element_ == Element::kUnit ? "process" : KindName(element_);
  word[0] = UpperCase(word.substr(0, 1))[0];
  return Label(Line(fieldLine_), FieldText()).starts_with(word);
}

void Reading::StopAtNumber(const std::string& description, bool beyond) {
  const std::size_t line = ends_.size();
  if (line == elementLine_ && !StartsWithItsWord()) {
    Add(Severity::kError,
        std::string("A ") + KindName(element_) + " or the line '" + listEnd_ +
            "' is expected here, and this line has no number.",
        "Put the missing line in, or take the lines between the elements out." +
            std::string(kNotReadOn));
    StopHere(Stop::Kind::kFinal);
    return;
  }
  if (fieldLine_ != line) {
    Add(Severity::kError, "A number of this element can't be used: " + Trim(description),
        "Write whole numbers up to 32,767." + std::string(kNotReadOn));
    StopHere(Stop::Kind::kFinal);
    return;
  }
  const std::string field(FieldText().substr(0, fieldLength_));
  if (beyond) {
    Add(Severity::kError, "A number in '" + field + "' is beyond 32,767.",
        "Number the elements up to 32,767.");
  } else {
    Add(Severity::kError, "A number is expected here, and '" + field + "' is none.",
        "Write a whole number up to 32,767.");
  }
  StopHere(Stop::Kind::kNumber);
}

void Reading::StopAtMark() {
  const char* form = "(";
  switch (element_) {
    case Element::kLink:
      form = "#NUMBER  (TYPE, NAME)";
      break;
    case Element::kUnit:
      form = ends_.size() == elementLine_ ? "PROCESS  #NUMBER" : "NUMBER  (NAME)";
      break;
    default:
      form = "#NUMBER (NAME)";
  }
  Add(Severity::kError,
      "This line lacks a mark: it must end in the form " + std::string(form) + ".",
      "Write the line in that form." + std::string(kNotReadOn));
  StopHere(Stop::Kind::kFinal);
}

void Reading::StopAtEnd() {
  if (searched_) {
    findings_.push_back({Severity::kError, searchedFrom_, CurrentElement(),
                         "The line '" + *searched_ +
                             "' is missing: it is expected here or further down, and the text ends "
                             "without it.",
                         "Put the line in." + std::string(kNotReadOn)});
  } else {
    const std::size_t line = elementLine_ == 0 ? ends_.size() : elementLine_;
    findings_.push_back({Severity::kError, line, CurrentElement(),
                         "The text ends in the midst of this element.",
                         "Export the model anew." + std::string(kNotReadOn)});
  }
  StopHere(Stop::Kind::kFinal);
}

// A keyword that was passed over belongs to what comes behind the one that was searched for, so
// that one is missing where the passed one stands.
void Reading::ReportPassedKeywords() {
  const auto indent = [](std::string_view line) {
    return std::min(line.find_first_not_of(' '), line.size());
  };
  for (const SearchRange& range : ranges_) {
    for (std::size_t line = range.from; line < range.to; ++line) {
      const std::string_view passed = Line(line);
      if (passed.empty() || indent(passed) > indent(*range.keyword) ||
          !keywords_.contains(passed)) {
        continue;
      }
      findings_.push_back({Severity::kError,
                           line,
                           {},
                           "The line '" + *range.keyword + "' is missing in front of this one; " +
                               "all up to line " + std::to_string(range.to) + " is taken for text.",
                           "Put the line in."});
      break;
    }
  }
}

void Reading::Finish() {
  if (foreign_ && stop_.kind == Stop::Kind::kFinal) {
    findings_.resize(1);  // what else it holds is no matter of a model
    return;
  }
  for (const Unit& unit : model_.units) TakeNote(unit.carried, unit.place);
  ReportCarried();
  ReportPassedKeywords();
  ReportCharacters();
}

ReadModelText::ReadModelText(const std::string& path, const std::string& templatePath)
    : reading_(SizeOf(path)) {
  desktop_.onMessage = [this](const ScriptedDesktop::ShownMessage& shown) {
    reading_.OnMessage(shown.message);
  };
  ModelToProject& state = program_.modelToProject;
  state.gMspConn = std::make_unique<Connection>(program_.workspace);
  state.gMspConn->Open(ConnectionText(templatePath), OpenMode::kCopy);
  state.gMspProjId = 1;
  state.readerListener = &reading_;
  try {
    ReadNeutralText(state, path);
  } catch (const ProgramEnd&) {
    // The box before it is a finding.
  }
  state.readerListener = nullptr;
  desktop_.onMessage = nullptr;
  ThrowMachineFault(desktop_);
  reading_.Finish();
}

ModelToProject& ReadModelText::WithRows() {
  reading_.StoreRowsIn(program_.modelToProject);
  return program_.modelToProject;
}

}  // namespace merivane::inspect
