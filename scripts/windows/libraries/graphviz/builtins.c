// The one layout engine that the library knows without looking for plugins.
#include "config.h"
#include "gvplugin.h"

extern gvplugin_library_t gvplugin_dot_layout_LTX_library;

lt_symlist_t lt_preloaded_symbols[] = {
    {"gvplugin_dot_layout_LTX_library", &gvplugin_dot_layout_LTX_library},
    {0, 0},
};
