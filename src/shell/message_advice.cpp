#include "shell/message_advice.h"

#include "runtime/text.h"

namespace merivane::shell {

using namespace runtime;

namespace {

struct Advice {
  const char* part;  // of the message
  const char* text;
};

constexpr Advice kAdvice[] = {
    {"Object variable or With block variable not set",
     "No database is open. Pick it with the button behind its box: a name that is only typed is "
     "not "
     "opened."},
    {"Bad file name or number",
     "No model text is open. Pick it with the button behind its box: a name that is only typed is "
     "not opened."},
    {"The connection cannot be used to perform this operation",
     "The database could not be opened when it was picked. Close the program that holds it, or "
     "pick "
     "another one."},
    {"is open for reading only",
     "Translate into a new database, or merge into one that Merivane wrote."},
    {"Subscript out of range",
     "Links of the model may run in a circle, or a junction may be fed by more than a hundred "
     "others."},
};

}  // namespace

std::string MessageAdvice(const std::string& text) {
  for (const Advice& advice : kAdvice) {
    if (Holds(text, advice.part)) return advice.text;
  }
  return {};
}

}  // namespace merivane::shell
