#include "rendered_formats.h"

namespace merivane::pictures {

const std::vector<RenderedFormat>& RenderedFormats() {
  static const std::vector<RenderedFormat> none;
  return none;
}

}  // namespace merivane::pictures
