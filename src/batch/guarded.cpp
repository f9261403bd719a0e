#include "guarded.h"

#include <new>

#include "platform/desktop.h"
#include "printable.h"
#include "program/progress.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::batch {

using namespace platform;

namespace {

constexpr const char* kNoMemory = "there is not enough memory.";

}  // namespace

std::string FailureText() {
  try {
    throw;
  } catch (const ProgramEnd&) {
    return "";
  } catch (const program::RunCancelled&) {
    return "";
  } catch (const RunTimeError& error) {
    return ToUtf8(error.Description());
  } catch (const std::bad_alloc&) {
    return kNoMemory;
  } catch (const std::exception& error) {
    return error.what();
  }
}

int TellFailure(std::ostream& err) noexcept {
  try {
    const std::string text = FailureText();
    if (!text.empty()) err << "merivane-batch: " << PrintableText(text) << '\n';
  } catch (...) {
    err << "merivane-batch: " << kNoMemory << '\n';
  }
  return kFailed;
}

}  // namespace merivane::batch
