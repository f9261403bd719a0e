// The layout as a module.
#include "modules.h"

using merivane::pictures::LayOut;
using merivane::pictures::LayoutModule;

extern "C" {
extern const LayoutModule merivane_module;
const LayoutModule merivane_module{{MERIVANE_VERSION}, LayOut};
}
