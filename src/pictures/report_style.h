// How the report page looks: on paper, on a light and on a dark screen.
#pragma once

#include <string>

namespace merivane::pictures {

std::string ReportStyle();

}  // namespace merivane::pictures
