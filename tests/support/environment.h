// Variables of the environment that a test sets and gives back.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace merivane::test {

class EnvironmentVariable {
 public:
  explicit EnvironmentVariable(std::string name) : name_(std::move(name)) {
    if (const char* value = std::getenv(name_.c_str())) saved_ = value;
  }
  ~EnvironmentVariable() { Set(saved_); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

  void Set(const std::optional<std::string>& value) const {
#ifdef _WIN32
    _putenv_s(name_.c_str(), value.value_or("").c_str());  // which knows no empty ones
#else
    if (value) {
      setenv(name_.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name_.c_str());
    }
#endif
  }

 private:
  std::string name_;
  std::optional<std::string> saved_;
};

}  // namespace merivane::test
