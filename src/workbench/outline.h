// The outline of a model, and the plan that is laid over it.
#pragma once

#include <string>

#include "pictures/chart.h"
#include "runtime/dates.h"
#include "store/connection.h"
#include "workbench/file_view.h"

namespace merivane::workbench {

using namespace runtime;

// Adds the scenarios of the view's model with their units, each scenario below the unit that it
// decomposes. REQUIRES: called before the plan is added.
void AddModel(FileView& view);

// Adds dates, links and bars of the project's plan to the units that its tasks stand for, the other
// tasks behind them, and the chart, over the plan as it was where that is given. What can't be is
// told in whyNoChart.
void AddPlan(FileView& view, Connection& connection, std::int32_t project, const DateTime& today,
             const DatedPlan* before = nullptr);

// A name with the earlier one behind it, where that was another.
std::string NameAndBefore(const std::string& name, const std::string& before);

// Adds a property where it says something.
void AddProperty(Element& element, const char* name, const std::string& text);

}  // namespace merivane::workbench
