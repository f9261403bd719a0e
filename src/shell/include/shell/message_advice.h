// A second sentence for messages that name no cause.
#pragma once

#include <string>

namespace merivane::shell {

// What the user can do about a message that tells this run-time error (0: none); empty where the
// message says enough itself.
std::string MessageAdvice(int error);

}  // namespace merivane::shell
