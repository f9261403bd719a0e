// How the report page looks: on paper, on a light and on a dark screen.
#pragma once

namespace merivane::pictures {

extern const char* const kReportStyle;

}  // namespace merivane::pictures
