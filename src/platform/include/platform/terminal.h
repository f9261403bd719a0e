// Whether somebody may be watching.
#pragma once

namespace merivane::platform {

bool StandardErrorIsTerminal();

}  // namespace merivane::platform
