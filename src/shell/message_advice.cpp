#include "shell/message_advice.h"

#include "runtime/run_time_error.h"

namespace merivane::shell {

using namespace runtime;

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

}  // namespace

std::string MessageAdvice(int error) {
  for (const Advice& advice : kAdvice) {
    if (error == advice.error) return advice.text;
  }
  return {};
}

}  // namespace merivane::shell
