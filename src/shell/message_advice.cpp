#include <fstream>
#include <string_view>

#include "runtime/file_names.h"
#include "runtime/text.h"
#include "shell/run_result.h"

namespace merivane::shell {

namespace {

struct Advice {
  int error;
  const char* text;
};

constexpr Advice kAdvice[] = {
    {kObjectNotSet,
     "No database is open. Pick it with the button behind its box: a name that is only typed is "
     "not "
     "opened."},
    {kBadFileNumber,
     "No model text is open. Pick it with the button behind its box: a name that is only typed is "
     "not opened."},
    {kConnectionInvalid,
     "The database could not be opened when it was picked. Close the program that holds it, or "
     "pick "
     "another one."},
    {kNotUpdatable, "Translate into a new database, or merge into one that Merivane wrote."},
    {kSubscriptOutOfRange,
     "Links of the model may run in a circle, or a junction may be fed by more than a hundred "
     "others."},
};

constexpr const char* kSaveAsXml =
    "This is a plan file of Microsoft Project. Save it there as XML, which Merivane reads.";

// The first bytes of the containers that plan files are.
constexpr std::string_view kCompound("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
constexpr std::string_view kAccess("\0\1\0\0Standard Jet DB", 19);

std::string HeadOf(const std::string& path) {
  std::string head(kAccess.size(), '\0');
  std::ifstream file(PathOf(path), std::ios::binary);
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(file.gcount()));
  return head;
}

}  // namespace

std::string NameAdvice(const std::string& path) {
  const std::string ending = UpperCase(Right(path, 4));
  if (ending == ".MPP") return kSaveAsXml;
  if (ending != ".MPD") return {};
  return "This is a database of Microsoft Project. Pick a copy of it whose name ends in .mdb.";
}

std::string PlanFileAdvice(const std::string& path, const RunTimeError& error) {
  const std::string head = HeadOf(path);
  if (head.starts_with(kCompound)) return kSaveAsXml;
  if (error.Number() != kUnknownTable || !head.starts_with(kAccess)) return {};
  return "It has no plan as Microsoft Project 2000 to 2003 keeps it. If it is a database of "
         "Microsoft Project 98, open it once in a later edition, or save it as XML.";
}

std::string MessageAdvice(int error) {
  for (const Advice& advice : kAdvice) {
    if (error == advice.error) return advice.text;
  }
  return {};
}

}  // namespace merivane::shell
