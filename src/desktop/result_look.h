// The word and the colour of each kind of result in a list.
#pragma once

#include <QColor>

#include "inspect/model_snapshot.h"

namespace merivane::desktop {

using namespace inspect;

struct Look {
  const char* word;
  QColor colour;
};

Look LookOf(Severity severity);
Look LookOf(ChangeKind kind);

}  // namespace merivane::desktop
