#include "custom_fields.h"

namespace merivane::mspdi {

namespace {

constexpr std::int64_t kTaskFields = 188743680;
constexpr std::int64_t kResourceFields = 205520896;
constexpr std::int64_t kAssignmentFields = 255852544;
constexpr const char* kOutlineCode = "Outline Code";

// Fields of one kind whose numbers follow one another.
struct Run {
  Owner owner;
  const char* kind;
  int from;  // the number within the kind
  int to;
  std::int64_t first;  // of the field, from the owner's base
  std::int64_t step = 1;
};

constexpr Run kRuns[] = {
    {Owner::kTask, "Text", 1, 5, 51, 3},         {Owner::kTask, "Text", 6, 10, 66},
    {Owner::kTask, "Text", 11, 30, 317},         {Owner::kTask, "Start", 1, 5, 52, 3},
    {Owner::kTask, "Start", 6, 10, 282, 2},      {Owner::kTask, "Finish", 1, 5, 53, 3},
    {Owner::kTask, "Finish", 6, 10, 283, 2},     {Owner::kTask, "Flag", 1, 10, 72},
    {Owner::kTask, "Flag", 11, 20, 292},         {Owner::kTask, "Number", 1, 5, 87},
    {Owner::kTask, "Number", 6, 20, 302},        {Owner::kTask, "Duration", 1, 3, 103},
    {Owner::kTask, "Duration", 4, 10, 275},      {Owner::kTask, "Cost", 1, 3, 106},
    {Owner::kTask, "Cost", 4, 10, 258},          {Owner::kTask, "Date", 1, 10, 265},
    {Owner::kTask, kOutlineCode, 1, 10, 416, 2}, {Owner::kResource, "Text", 1, 2, 8},
    {Owner::kResource, "Text", 3, 5, 30},        {Owner::kResource, "Text", 6, 10, 97},
    {Owner::kResource, "Text", 11, 30, 225},     {Owner::kResource, "Start", 1, 5, 102},
    {Owner::kResource, "Start", 6, 10, 220},     {Owner::kResource, "Finish", 1, 5, 107},
    {Owner::kResource, "Finish", 6, 10, 190},    {Owner::kResource, "Number", 1, 5, 112},
    {Owner::kResource, "Number", 6, 20, 205},    {Owner::kResource, "Duration", 1, 3, 117},
    {Owner::kResource, "Duration", 4, 10, 183},  {Owner::kResource, "Cost", 1, 3, 123},
    {Owner::kResource, "Cost", 4, 10, 166},      {Owner::kResource, "Flag", 10, 10, 126},
    {Owner::kResource, "Flag", 1, 9, 127},       {Owner::kResource, "Flag", 11, 20, 195},
    {Owner::kResource, "Date", 1, 10, 173},      {Owner::kResource, kOutlineCode, 1, 10, 278, 2},
    {Owner::kAssignment, "Text", 1, 10, 88},     {Owner::kAssignment, "Text", 11, 30, 218},
    {Owner::kAssignment, "Start", 1, 5, 98},     {Owner::kAssignment, "Start", 6, 10, 213},
    {Owner::kAssignment, "Finish", 1, 5, 103},   {Owner::kAssignment, "Finish", 6, 10, 183},
    {Owner::kAssignment, "Number", 1, 5, 108},   {Owner::kAssignment, "Number", 6, 20, 198},
    {Owner::kAssignment, "Duration", 1, 3, 113}, {Owner::kAssignment, "Duration", 4, 10, 176},
    {Owner::kAssignment, "Cost", 1, 3, 119},     {Owner::kAssignment, "Cost", 4, 10, 159},
    {Owner::kAssignment, "Flag", 10, 10, 122},   {Owner::kAssignment, "Flag", 1, 9, 123},
    {Owner::kAssignment, "Flag", 11, 20, 188},   {Owner::kAssignment, "Date", 1, 10, 166},
};

std::int64_t BaseOf(Owner owner) {
  switch (owner) {
    case Owner::kTask:
      return kTaskFields;
    case Owner::kResource:
      return kResourceFields;
    case Owner::kAssignment:
    case Owner::kLink:
      break;
  }
  return kAssignmentFields;
}

}  // namespace

std::optional<CustomField> CustomFieldOf(std::int64_t number) {
  for (const Run& run : kRuns) {
    const std::int64_t behind = number - BaseOf(run.owner) - run.first;
    if (behind < 0 || behind % run.step != 0) continue;
    const std::int64_t place = run.from + behind / run.step;
    if (place > run.to) continue;
    return CustomField{run.owner, run.kind + std::to_string(place), run.kind == kOutlineCode};
  }
  return std::nullopt;
}

}  // namespace merivane::mspdi
