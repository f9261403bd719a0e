#include "guarded.h"

#include <new>

#include "platform/desktop.h"
#include "printable.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::batch {

using namespace platform;

namespace {

constexpr const char* kNoMemory = "merivane-batch: there is not enough memory.\n";

void Tell(std::ostream& err, const std::string& text) {
  err << "merivane-batch: " << PrintableText(text) << '\n';
}

void TellHandled(std::ostream& err) {
  try {
    throw;
  } catch (const ProgramEnd&) {
    // Its box has told why.
  } catch (const RunTimeError& error) {
    Tell(err, ToUtf8(error.Description()));
  } catch (const std::bad_alloc&) {
    err << kNoMemory;
  } catch (const std::exception& error) {
    Tell(err, error.what());
  }
}

}  // namespace

int TellFailure(std::ostream& err) noexcept {
  try {
    TellHandled(err);
  } catch (...) {
    err << kNoMemory;
  }
  return kFailed;
}

}  // namespace merivane::batch
