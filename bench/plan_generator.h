// Plans of any size in shapes that once cost more than in step: MPX text, and SQL for a database.
#pragma once

#include <string>

namespace merivane::bench {

// `head` is an MPX file with its field lines (60, 61); its tasks are left out.
// The outline goes down one level a task to the middle of the plan, and back up.
std::string DeepPlan(const std::string& head, int tasks);
// Tasks in pairs; each follows both of the pair before.
std::string MeshPlan(const std::string& head, int tasks);

// Adds that many projects of 100 tasks.
std::string ManyProjects(int projects);

}  // namespace merivane::bench
