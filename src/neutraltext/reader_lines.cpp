#include "reader_lines.h"

#include <utility>

#include "program/model_words.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

template <typename Convert>
auto NumberFrom(const ModelToProject& state, NumberUse use, const std::string& text,
                Convert convert) -> decltype(convert()) {
  try {
    const auto value = convert();
    if (state.readerListener) state.readerListener->OnNumber(use, text, value);
    return value;
  } catch (const RunTimeError& error) {
    if (!state.readerListener) throw;
    const auto other = state.readerListener->OnBadNumber(use, text, error);
    if (!other) throw;
    return *other;
  }
}

// The writers tell every field of a record, so that an empty one is meant. What an object tells of
// its unit stays for the objects behind it.
void Forget(FieldVariables& fields, ElementKind element) {
  if (element == ElementKind::kJunctionFact) return;
  if (element != ElementKind::kObjectUse) {
    fields = FieldVariables();
    return;
  }
  for (FieldVariable* field :
       {&fields.Object_Occ_Num, &fields.Object_Name, &fields.Property_List}) {
    *field = FieldVariable();
  }
}

}  // namespace

void NextLine(ModelToProject& state) {
  state.progress.Step();
  if (state.lineSource) {
    state.lineSource->Next(state.gLine);
    if (state.readerListener) state.readerListener->OnFileLine(state.lineSource->FileLine());
  } else {
    state.files.ReadLine(state.gTextFile, state.gLine);
  }
  if (state.readerListener) state.readerListener->OnLine(state.gLine);
}

void NextLines(ModelToProject& state, int count) {
  for (int i = 0; i < count; ++i) NextLine(state);
}

void Search(ModelToProject& state, std::string_view keyword) {
  if (state.readerListener) state.readerListener->OnSearch(keyword);
}

void BeginRecord(ModelToProject& state, ElementKind element, std::string_view listEnd) {
  if (state.lineSource) Forget(state.fields, element);
  if (state.readerListener) state.readerListener->OnRecord(element, listEnd);
}

void SkipTo(ModelToProject& state, std::string_view keyword) {
  Search(state, keyword);
  while (state.gLine != keyword) NextLine(state);
}

void SkipToLineThatHolds(ModelToProject& state, std::string_view text) {
  Search(state, text);
  while (!Holds(state.gLine, text)) NextLine(state);
}

void EnterList(ModelToProject& state, std::string_view opening, std::string_view closing) {
  SkipTo(state, opening);
  LeaveRecord(state, 1, closing);
}

void LeaveRecord(ModelToProject& state, int count, std::string_view closing) {
  NextLines(state, count);
  if (state.gLine != closing) NextLine(state);
}

std::string CollectTo(ModelToProject& state, std::string_view closing) {
  Search(state, closing);
  std::string block;
  while (state.gLine != closing) {
    block.append(state.gLine).append(kCrLf);
    NextLine(state);
  }
  return block;
}

std::string ReadBlock(ModelToProject& state, std::string_view opening) {
  SkipTo(state, opening);
  NextLine(state);
  return CollectTo(state, EndOf(opening));
}

std::string Field(const ModelToProject& state, std::size_t start, std::size_t length) {
  if (state.readerListener) state.readerListener->OnField(start, length);
  return FieldAfterBlanks(state.gLine, start, length);
}

std::string NextField(ModelToProject& state, std::size_t start, std::size_t length) {
  NextLine(state);
  return Field(state, start, length);
}

std::string NumberField(const ModelToProject& state, std::size_t start) {
  constexpr std::size_t kDigits = 4;
  constexpr std::size_t kOwnDigits = 5;  // all that a number can have
  return Field(state, start, state.lineSource ? kOwnDigits : kDigits);
}

std::string NextNumberField(ModelToProject& state, std::size_t start) {
  NextLine(state);
  return NumberField(state, start);
}

std::int16_t Integer(const ModelToProject& state, NumberUse use, const std::string& text) {
  return NumberFrom(state, use, text, [&] { return ToInt16(text); });
}

double Number(const ModelToProject& state, const std::string& text) {
  return NumberFrom(state, NumberUse::kValue, text, [&] { return ToDouble(text); });
}

void Keep(FieldVariable& variable, std::string text) {
  if (!text.empty()) variable = std::move(text);
}

void KeepInteger(const ModelToProject& state, FieldVariable& variable, const std::string& text) {
  if (!text.empty()) variable = Integer(state, NumberUse::kValue, text);
}

void KeepNextField(ModelToProject& state, FieldVariable& variable, std::size_t start,
                   std::size_t length) {
  Keep(variable, NextField(state, start, length));
}

void KeepBlock(ModelToProject& state, FieldVariable& variable, std::string_view opening) {
  Keep(variable, ReadBlock(state, opening));
}

void Cut(ModelToProject& state, std::size_t length) {
  if (state.readerListener) state.readerListener->OnCut(length);
}

}  // namespace merivane::neutraltext
