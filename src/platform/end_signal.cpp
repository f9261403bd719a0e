#include <csignal>

#include "platform/program_run.h"

namespace merivane::platform {

namespace {

// A handler reaches nothing else.
volatile std::sig_atomic_t asked = 0;
void (*volatile wakeUp)() = nullptr;

void Keep(int number) {
  asked = number;
  std::signal(number, SIG_DFL);
  if (wakeUp != nullptr) wakeUp();
}

constexpr int kSignals[] = {
#ifdef SIGHUP
    SIGHUP,
#endif
    SIGINT, SIGTERM};

}  // namespace

void ListenForEnd(void (*wake)()) {
  wakeUp = wake;
  for (const int number : kSignals) {
    if (std::signal(number, Keep) == SIG_IGN) std::signal(number, SIG_IGN);
  }
}

bool EndIsAsked() { return asked != 0; }

void EndAsAsked() {
  const int number = asked;
  asked = 0;
  if (number == 0) return;
  std::signal(number, SIG_DFL);
  std::raise(number);
}

}  // namespace merivane::platform
