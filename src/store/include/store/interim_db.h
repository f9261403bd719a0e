// The template and the interim database that is copied from it.
#pragma once

#include <memory>
#include <string>

#include "store/connection.h"

namespace merivane::store {

// Proves a file as a template: opens it and a record set on each of the tables that the program
// writes to, those of the plan and those of the model. The first failure comes up.
void ProveTemplateDb(Workspace& workspace, const std::string& path);
// False on any failure, without a word.
bool CheckTemplateDb(Workspace& workspace, const std::string& path);

// Makes `gMspConn` new and opens it on `path`. With `gOverwriteDb` it then empties MSP_PROJECTS and
// the interim tables, save Activity_in_Scenario and Object_in_Activity_in_Scenario, row by row.
void OpenInterimDb(Workspace& workspace, std::unique_ptr<Connection>& gMspConn, bool gOverwriteDb,
                   const std::string& path);

// 1 when the record set has a column called exactly `name`, case included.
int FieldExists(class Recordset& recordset, const std::string& name);
// 1 when the schema holds a table called exactly `name`, case included.
int TableExists(Connection* connection, const std::string& name);

}  // namespace merivane::store
