// A second sentence for messages that name no cause.
#pragma once

#include <string>

namespace merivane::shell {

// What the user can do about a message with this text; empty where the text says enough itself.
std::string MessageAdvice(const std::string& text);

}  // namespace merivane::shell
