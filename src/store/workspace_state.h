#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine.h"
#include "store/connection.h"

namespace merivane::store {

struct Workspace::State {
  // Commits the connections on that file but `self`, and lets go of what they read. True where
  // there is one.
  bool CommitOthers(const std::string& path, const Connection* self);
  Engine* EngineOn(const std::string& path) const;
  // The engine that is held on that file, null without one.
  std::shared_ptr<Engine> HeldOn(const std::string& path) const;

  std::vector<Connection*> connections;
  std::map<std::string, std::string> placed;  // identities of the files put in place, by name
  std::shared_ptr<Engine> held;  // its transaction ends with KeepHeld or DropHeld alone

 private:
  friend class Workspace;
  static Engine* EngineOf(const Connection& connection) { return connection.engine_.get(); }
};

}  // namespace merivane::store
