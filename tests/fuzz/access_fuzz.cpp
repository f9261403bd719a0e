// An Access file is loaded. The library that reads its pages is not ours: what it does to the
// process that the program starts for it (a fault, an abort, a loop) ends the case, and only our
// code's faults are findings.
#include <dlfcn.h>
#include <sys/time.h>
#include <ucontext.h>

#include <csetjmp>
#include <csignal>
#include <cstring>
#include <exception>
#include <string>

#include "access_copy.h"
#include "memory_database.h"
#include "memory_file.h"

namespace {

sigjmp_buf g_caseEnds;

bool IsForeign(const ucontext_t* context) {
  Dl_info place{};
  const auto* code = reinterpret_cast<const void*>(context->uc_mcontext.gregs[REG_RIP]);
  return dladdr(code, &place) == 0 || std::strstr(place.dli_fname, "/lib") != nullptr;
}

void OnFault(int signal, siginfo_t* /*info*/, void* context) {
  if (signal == SIGALRM || IsForeign(static_cast<ucontext_t*>(context))) {
    siglongjmp(g_caseEnds, signal);
  }
  std::signal(signal, SIG_DFL);
}

void Watch() {
  struct sigaction action {};
  action.sa_sigaction = OnFault;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGABRT, SIGALRM}) {
    sigaction(signal, &action, nullptr);
  }
}

// Milliseconds; 0 ends the wait.
void SetDeadline(int milliseconds) {
  const itimerval deadline{{0, 0}, {milliseconds / 1000, milliseconds % 1000 * 1000}};
  setitimer(ITIMER_REAL, &deadline, nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kPatience = 500;
  static const auto memory = merivane::fuzz::TemplateInMemory();
  static merivane::fuzz::MemoryFile file;
  static const bool watched = (Watch(), true);
  static int cases = 0;  // a case that ended early leaves its database behind
  file.Fill(data, size);
  const std::string loaded = memory->Path() + std::to_string(++cases);
  if (watched && sigsetjmp(g_caseEnds, 1) == 0) {
    SetDeadline(kPatience);
    try {
      merivane::store::WorkListener nobody;
      merivane::store::CopyAccessTables(file.Path(), loaded, nobody);
    } catch (const std::exception&) {
    }
  }
  SetDeadline(0);
  return 0;
}
