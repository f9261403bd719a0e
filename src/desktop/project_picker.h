// Which project of a database is meant.
#pragma once

#include <cstdint>
#include <optional>

#include "store/connection.h"

class QWidget;

namespace merivane::desktop {

using namespace store;

class QtDesktop;

// The project of the database, or the one that the user picks in front of `window`; nothing when
// cancelled or where there is none, which shows a box. Errors of the database come up.
std::optional<std::int32_t> PickProject(QtDesktop& desktop, QWidget& window,
                                        Connection& connection);

}  // namespace merivane::desktop
