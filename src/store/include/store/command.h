// A parameterised statement with one binary input parameter.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "runtime/value.h"

namespace merivane::store {

using namespace runtime;

class Connection;

// The parameter is appended once and keeps its size; its value is set for every Execute. A value
// longer than the size is a RunTimeError, as is a statement that fails.
class Command {
 public:
  void ActiveConnection(Connection* connection) { connection_ = connection; }
  void CommandText(std::string sql) { sql_ = std::move(sql); }
  bool HasParameter() const { return size_.has_value(); }
  void AppendBinaryParameter(std::size_t size) { size_ = size; }
  void ParameterValue(Bytes value) { value_ = std::move(value); }
  void Execute();

 private:
  Connection* connection_ = nullptr;
  std::string sql_;
  std::optional<std::size_t> size_;
  Bytes value_;
};

}  // namespace merivane::store
