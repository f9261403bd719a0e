#include "store/command.h"

#include "engine.h"
#include "store/connection.h"

namespace merivane::store {

void Command::Execute() {
  if (connection_ == nullptr) throw RunTimeError(kObjectNotSet);
  if (!connection_->engine_) throw RunTimeError(kConnectionInvalid);
  if (size_ && value_.size() > *size_) {
    throw RunTimeError(kDatabaseError,
                       "The parameter's value has " + std::to_string(value_.size()) +
                           " bytes, and its size is " + std::to_string(*size_) + ".");
  }
  Engine& engine = *connection_->engine_;
  std::vector<Literal> literals;
  UpdateShape& shape = engine.FindUpdate(sql_, literals);
  if (shape.statement.hasParameter != size_.has_value()) {
    throw RunTimeError(kStatementError, "The statement and its parameter don't fit: " + sql_);
  }
  engine.BeginWrite();
  engine.BeforeUpdate(*shape.table, std::nullopt, shape.assigned);
  sqlite3_stmt* update = shape.prepared.get();
  const Value parameter(value_);
  if (shape.statement.hasParameter) Bind(update, 1, parameter);
  for (std::size_t i = 0; i < literals.size(); ++i) {
    Bind(update, static_cast<int>(i) + 2, literals[i]);
  }
  sqlite3_step(update);
  const int result = sqlite3_reset(update);
  std::optional<RunTimeError> failure;
  if (result != SQLITE_OK) failure = DatabaseError(engine.Database(), engine.Path());
  sqlite3_clear_bindings(update);
  shape.table->WrittenElsewhere();
  if (failure) throw RunTimeError(*failure);
}

}  // namespace merivane::store
