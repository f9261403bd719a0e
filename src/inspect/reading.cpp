#include "reading.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include "inspect/finding.h"
#include "runtime/conversions.h"
#include "runtime/file_names.h"
#include "runtime/text.h"
#include "store/connection.h"

namespace merivane::inspect {

namespace {

constexpr const char* kNotReadOn =
    " Nothing behind this line was read, so the rest of the model is not checked.";

constexpr const char* kChooseModel = "Choose a model text that was exported from Celvar.";

// The files that a user is most likely to take for a model, by their first line.
struct OtherFile {
  std::string_view mark;
  const char* what;
};

constexpr OtherFile kOtherFiles[] = {
    {"\xD0\xCF\x11\xE0",
     "This looks like a plan file of Microsoft Project: save it there as XML to bring it back into "
     "its model."},
    {"SQLite format 3", "This is a database."},
    {"Standard Jet DB", "This is an Access database."},
    {"MPX", "This is an MPX file, a plan."},
    {"<?xml", "This is an XML file."},
};

std::string ForeignAdvice(std::string_view line) {
  const auto* kind = std::ranges::find_if(kOtherFiles, [&](const OtherFile& other) {
    return line.substr(0, 32).find(other.mark) != std::string_view::npos;
  });
  return kind == std::end(kOtherFiles) ? kChooseModel
                                       : std::string(kind->what) + " " + kChooseModel;
}

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
  findings_.push_back({severity, std::max<std::size_t>(lines_.Size(), 1), CurrentElement(),
                       std::move(sentence), std::move(advice)});
}

// What is known of an element whose row isn't written yet.
ElementName Reading::CurrentElement() const {
  if (elementLine_ == 0) return {};
  if (!model_.elements.empty() && model_.elements.back().line == elementLine_) {
    return NameOf(model_.elements.back());
  }
  ElementName name{KindName(element_), std::nullopt, ""};
  const std::string_view head = Line(elementLine_);
  const std::string text = Trim(head.substr(head.find_last_of(" #") + 1));
  if (IsNumericText(text) && text.size() < 10) name.number = ToInt32(text);
  const bool named = element_ == ElementKind::kProcess || element_ == ElementKind::kObject ||
                     element_ == ElementKind::kFact || element_ == ElementKind::kScenario ||
                     element_ == ElementKind::kUnit;
  if (named && elementLine_ < lines_.Size()) {
    name.name = std::string(Behind(Line(elementLine_ + 1), element_ == ElementKind::kUnit ? 7 : 3));
  }
  return name;
}

std::string_view Reading::Line(std::size_t number) const {
  if (number == 0 || number > lines_.Size()) return {};  // nothing was read, or not yet
  return lines_.At(number);
}

std::size_t Reading::FileLine(std::size_t number) const {
  if (fileLines_.empty() || number == 0) return number;
  return fileLines_[std::min(number, fileLines_.size()) - 1];
}

// From here on: lines as the user counts them.
void Reading::CountByFileLines() {
  for (ElementEntry& place : model_.elements) place.line = FileLine(place.line);
  for (ObjectUse& use : model_.objectUses) use.line = FileLine(use.line);
  for (Finding& finding : findings_) finding.line = FileLine(finding.line);
  if (untranslatable_) untranslatable_->line = FileLine(untranslatable_->line);
}

void Reading::OnLine(const std::string& line) {
  lines_.Add(line);
  if (searched_ && line == *searched_) EndSearch();
}

const std::string* Reading::Keyword(std::string_view keyword) {
  const auto known = keywords_.find(keyword);
  return &*(known == keywords_.end() ? keywords_.emplace(keyword).first : known);
}

void Reading::OnSearch(std::string_view keyword) {
  searched_ = Keyword(keyword);
  searchedFrom_ = lines_.Size();
  if (Line(lines_.Size()) == *searched_) EndSearch();
}

void Reading::EndSearch() {
  // The search often starts on the keyword that the one before ended at.
  const std::size_t from = searchedFrom_ == foundAt_ ? searchedFrom_ + 1 : searchedFrom_;
  if (lines_.Size() > from && !cut_) {
    ranges_.push_back(
        {searched_, static_cast<std::uint32_t>(from), static_cast<std::uint32_t>(lines_.Size())});
  }
  foundAt_ = lines_.Size();
  searched_ = nullptr;
  cut_ = false;
}

void Reading::OnRecord(ElementKind element, std::string_view listEnd) {
  if (element == ElementKind::kJunctionFact) return;  // a line of the junction's list
  searched_ = nullptr;
  if (element == ElementKind::kObjectUse) {  // tells of its unit
    useLine_ = lines_.Size();
    return;
  }
  standIn_.reset();
  element_ = element;
  elementLine_ = lines_.Size();
  listEnd_ = listEnd;
}

std::string_view Reading::FieldText() const {
  return fieldLine_ == 0 ? std::string_view() : Behind(Line(fieldLine_), fieldStart_);
}

void Reading::OnField(std::size_t start, std::size_t length) {
  constexpr std::size_t kNumberLength = 4;  // one more in a text that Merivane wrote
  fieldLine_ = lines_.Size();
  fieldStart_ = start;
  const std::string_view field = FieldText();
  if (field.size() <= length) return;
  const std::string kept(field.substr(0, length));
  if (length <= kNumberLength + 1) {
    if (!IsNumericText(kept)) return;  // told as no number
    const std::string digits = length == kNumberLength ? "four digits" : "five digits";
    Add(Severity::kError,
        "The number " + std::string(field) + " has more than " + digits + "; it is read as " +
            kept + ".",
        "Number this element, and all that refer to it, with at most " + digits + ".");
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

// The paths through the model hang on numbers of these.
void Reading::MarkUntranslatable() {
  const bool bearsPaths = element_ == ElementKind::kScenario || element_ == ElementKind::kUnit ||
                          element_ == ElementKind::kJunction || element_ == ElementKind::kLink;
  if (bearsPaths && !untranslatable_) untranslatable_ = findings_.back();
}

// What the element in hand refers to by this line is not known.
void Reading::MarkBadLine() {
  badLines_.insert(lines_.Size());
  if (element_ != ElementKind::kUnit) MarkUntranslatable();  // it refers to pools
}

void Reading::OnNumber(NumberUse use, const std::string& text, double value) {
  if (use == NumberUse::kValue) {
    if (element_ == ElementKind::kObject) CheckQuantity(text, value);
    return;
  }
  const std::string digits = Trim(text);
  if (digits.find_first_not_of("0123456789") == std::string::npos) return;
  Add(Severity::kWarning,
      "'" + digits + "' is read as the number " + std::to_string(static_cast<long>(value)) + ".",
      "Write a whole number from 1 to 32,767, here and wherever it is used.");
}

// Of an object, from one of its properties.
void Reading::CheckQuantity(const std::string& text, double value) {
  if (!Trim(Line(lines_.Size())).starts_with("Quantity:")) return;
  if (Holds(text, ",")) {
    Add(Severity::kWarning,
        "Commas don't count in the quantity '" + text + "'; the plan takes " + FixedTwo(value) +
            " of it.",
        "Write a point in front of a fraction, and no other marks.");
  } else if (value <= 0) {
    Add(Severity::kWarning,
        "The quantity '" + text + "' leaves nothing of it for the tasks that need it.",
        "Write a quantity above 0.");
  }
}

std::optional<std::int16_t> Reading::OnBadNumber(NumberUse use, const std::string& text,
                                                 const RunTimeError& error) {
  if (lines_.Size() == elementLine_ && !StartsWithItsWord()) {
    return std::nullopt;
  }
  if (error.Number() == kOverflow) {
    Add(Severity::kError, "The number '" + text + "' is beyond 32,767.",
        "Number the elements up to 32,767.");
  } else {
    Add(Severity::kError, "A number is expected here, and '" + text + "' is none.",
        "Write a whole number up to 32,767.");
  }
  if (use == NumberUse::kReference) MarkBadLine();
  if (use != NumberUse::kOwn) return std::int16_t{0};
  MarkUntranslatable();
  standIn_ = standIns_++;
  return standIn_;
}

// A line of another kind stands here because one before it is missing.
bool Reading::OnBadLine(const RunTimeError& /*error*/) {
  const std::string line = Trim(Line(lines_.Size()));
  const bool isUse = useLine_ == lines_.Size() && line.starts_with("Object-Occurrence");
  const bool isEnd = line.starts_with("Origin") || line.starts_with("Destination");
  if (!isUse && !isEnd) return false;
  Add(Severity::kError,
      std::string("This line lacks a mark: it must end in the form ") + FormOfLine() + ".",
      "Write the line in that form.");
  MarkBadLine();
  return true;
}

bool Reading::OnRefusedName(std::string_view rule) {
  Add(Severity::kError, std::string(rule), "Change the name, here and wherever it is used.");
  return true;
}

void Reading::OnMessage(const Message& message) {
  switch (message.error) {
    case kTypeMismatch:
    case kOverflow:
      StopAtNumber(message.text);
      return;
    case kInvalidProcedureCall:
      Stop(std::string("This line lacks a mark: it must end in the form ") + FormOfLine() + ".",
           "Write the line in that form.");
      return;
    case kInputPastEndOfFile:
      StopAtEnd();
      return;
    case kInvalidFileFormat:
      Add(Severity::kError,
          "The first line doesn't hold 'Dunmar Neutral Text', so this is no model.",
          ForeignAdvice(Line(1)));
      foreign_ = true;
      return;
    default:
      Stop("The reader stops here: " + Trim(message.text), "Mend the text here.");
  }
}

void Reading::Stop(std::string sentence, std::string advice) {
  Add(Severity::kError, std::move(sentence), std::move(advice) + kNotReadOn);
  stopped_ = true;
}

// Each element begins with its word and its number.
bool Reading::StartsWithItsWord() const {
  std::string word = element_ == ElementKind::kUnit ? "process" : KindName(element_);
  word[0] = UpperCase(word.substr(0, 1))[0];
  return Label(Line(fieldLine_), FieldText()).starts_with(word);
}

// Others were told where they stand; here something stands between the elements.
void Reading::StopAtNumber(const std::string& description) {
  if (lines_.Size() == elementLine_) {
    Stop(std::string("A ") + KindName(element_) + " or the line '" + listEnd_ +
             "' is expected here, and this line has no number.",
         "Put the missing line in, or take the lines between the elements out.");
  } else {
    Stop("A number of this element can't be used: " + Trim(description),
         "Write whole numbers up to 32,767.");
  }
}

const char* Reading::FormOfLine() const {
  if (useLine_ == lines_.Size()) return "NUMBER  (NAME)";
  switch (element_) {
    case ElementKind::kLink:
      return "#NUMBER  (TYPE, NAME)";
    case ElementKind::kUnit:
      return "PROCESS  #NUMBER";
    default:
      return "#NUMBER (NAME)";
  }
}

void Reading::StopAtEnd() {
  stopped_ = true;
  if (lines_.Size() == 0) {
    Add(Severity::kError, "The text is empty.", kChooseModel);
  } else if (searched_ && ReportNearKeyword(*searched_, searchedFrom_, lines_.Size() + 1)) {
    findings_.back().advice += kNotReadOn;
  } else if (searched_) {
    findings_.push_back({Severity::kError, searchedFrom_, CurrentElement(),
                         "The line '" + *searched_ +
                             "' is missing: it is expected here or further down, and the text ends "
                             "without it.",
                         "Put the line in." + std::string(kNotReadOn)});
  } else {
    const std::size_t line = elementLine_ == 0 ? lines_.Size() : elementLine_;
    findings_.push_back({Severity::kError, line, CurrentElement(),
                         "The text ends in the midst of this element.",
                         "Export the model anew." + std::string(kNotReadOn)});
  }
}

// A line that was passed over and was meant for the one that was searched for.
bool Reading::ReportNearKeyword(const std::string& keyword, std::size_t from, std::size_t to) {
  for (std::size_t line = std::max<std::size_t>(from, 1); line < to; ++line) {
    const std::string_view passed = Line(line);
    if (keywords_.contains(passed) || !IsNearMiss(passed, keyword)) continue;
    findings_.push_back({Severity::kError,
                         line,
                         {},
                         "The line '" + std::string(passed) +
                             "' is taken for text. Did you mean '" + keyword + "'?",
                         "Write the line as it stands there, blanks included."});
    return true;
  }
  return false;
}

// A keyword that was passed over belongs to what comes behind the one that was searched for, so
// that one is missing where the passed one stands.
void Reading::ReportPassedKeywords() {
  const auto indent = [](std::string_view line) {
    return std::min(line.find_first_not_of(' '), line.size());
  };
  for (const SearchRange& range : ranges_) {
    if (ReportNearKeyword(*range.keyword, range.from, range.to)) continue;
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
                               "all up to line " + std::to_string(FileLine(range.to)) +
                               " is taken for text.",
                           "Put the line in."});
      break;
    }
  }
}

void Reading::Finish() {
  if (foreign_ && stopped_) {
    findings_.resize(1);  // what else it holds is no matter of a model
    return;
  }
  ReportPassedKeywords();
  ReportCharacters();
  CountByFileLines();
  for (const UnitEntry& unit : model_.units) TakeNote(unit.carried, unit.place);
  ReportCarried();
  lines_.Forget();
  ranges_ = {};
}

ReadModelText::ReadModelText(const std::string& path, const std::string& templatePath,
                             platform::Desktop* shown)
    : reading_(SizeOf(path)) {
  if (shown != nullptr) {
    desktop_.ShowProgressOn(*shown);
    run_.emplace(program_.progress);
  }
  desktop_.onMessage = [this](const Message& box) { reading_.OnMessage(box); };
  ModelToProject& state = program_.modelToProject;
  state.gMspConn = std::make_unique<Connection>(program_.workspace, templatePath, OpenMode::kCopy);
  state.gMspProjId = 1;
  state.readerListener = &reading_;
  state.takesOwnText = true;
  try {
    ReadNeutralText(state, path);
  } catch (const ProgramEnd&) {
    // The box before it is a finding.
  }
  state.readerListener = nullptr;
  desktop_.onMessage = nullptr;
  desktop_.ThrowMachineFault();
  reading_.Finish();
}

ModelToProject& ReadModelText::WithRows() {
  reading_.StoreRowsIn(program_.modelToProject);
  return program_.modelToProject;
}

}  // namespace merivane::inspect
