// A model under change: each step changes the rows in hand and notes down what becomes of the
// tables. Numbers of what is added collide with nothing and stay readable in a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "model_rows.h"

namespace merivane::reconcile {

// The reader takes four digits of the numbers of processes, objects, junctions and links.
constexpr std::int32_t kMostNumber = 9999;
constexpr std::int32_t kMostUnit = 32767;  // it keeps that of a unit in 16 bits

class ModelEdit {
 public:
  explicit ModelEdit(ModelRows model);

  const ModelRows& Model() const { return model_; }
  const std::vector<TableChange>& Changes() const { return changes_; }

  // Links at an element, by their numbers, in the order of their rows.
  const std::vector<std::int32_t>& LinksFrom(std::int32_t element) const;
  const std::vector<std::int32_t>& LinksTo(std::int32_t element) const;
  bool IsUnit(std::int32_t element) const { return model_.units.contains(element); }
  std::set<std::int32_t> DecomposedUnits() const;  // with a scenario below them
  bool IsSentUnit(std::int32_t element) const;
  // Whether it is a junction of the type "Sync. AND", which ties its branches together.
  bool IsSyncAnd(std::int32_t element) const;

  // The number of a unit, or of a junction or link, that is to come.
  std::int32_t NextUnit() { return NextNumber(kMostUnit); }
  std::int32_t NextElement() { return NextNumber(kMostNumber); }
  std::int32_t AddProcess(const std::string& name);
  std::int32_t CopyProcess(std::int32_t process, const std::string& name);
  void NameProcess(std::int32_t process, const std::string& name);
  void SetNote(std::int32_t process, const std::string& note);

  void AddUnit(std::int32_t unit, std::int32_t scenario, std::int32_t process,
               const std::string& name);
  void NameUnit(std::int32_t unit, std::int32_t process, const std::string& name);
  void SetDuration(std::int32_t unit, const std::string& days);
  void SetLaborRule(std::int32_t unit, const std::string& rule);
  // Its links go; those that the plan wants are drawn again.
  void MoveUnit(std::int32_t unit, std::int32_t scenario);
  // REQUIRES: each new number is free.
  void NumberUnits(const std::map<std::int32_t, std::int32_t>& numbers);
  // With its links, uses and decompositions, and with its process where it was the last use.
  void RemoveUnit(std::int32_t unit);
  void RemoveProcessUnlessUsed(std::int32_t process);

  std::int32_t AddScenario(const std::string& name, std::int32_t parent);
  void RemoveScenario(std::int32_t scenario);

  std::int32_t AddJunction(std::int32_t scenario, std::string_view cardinality,
                           std::string_view type);
  void SetJunctionType(std::int32_t junction, std::string_view type);
  void AddLink(std::int32_t origin, std::int32_t destination);
  void SetOrigin(std::int32_t link, std::int32_t origin);
  void SetDestination(std::int32_t link, std::int32_t destination);
  // Junctions that joined something through it alone go too.
  void RemoveLink(std::int32_t link);

  std::int32_t AddObject(const std::string& name);
  void NameObject(std::int32_t object, const std::string& name);
  void SetObject(std::int32_t object, const char* column, Value value);
  void RemoveObject(std::int32_t object);  // and its uses
  void AddUse(std::int32_t unit, std::int32_t object);
  void RemoveUse(std::int32_t unit, std::int32_t object);
  bool HasObjects(std::int32_t unit) const;

 private:
  std::int32_t NextNumber(std::int32_t most);
  void Note(TableChange change) { changes_.push_back(std::move(change)); }
  TableChange::Key KeyOf(std::int32_t link) const;
  void SetEnd(std::int32_t link, const char* end, std::int32_t element);
  std::int32_t ScenarioOf(std::int32_t element) const;
  void Hang(std::vector<std::int32_t>& links, std::int32_t link) const;
  void TakeOutLink(std::int32_t link);
  void ClearUp(std::int32_t junction);
  bool IsJoinable(std::int32_t in, std::int32_t out) const;
  void RemoveJunction(std::int32_t junction);
  std::string FreeAlias(std::int32_t object) const;

  ModelRows model_;
  std::vector<TableChange> changes_;
  std::map<std::int32_t, std::vector<std::int32_t>> from_;
  std::map<std::int32_t, std::vector<std::int32_t>> to_;
  std::map<std::int32_t, std::size_t> place_;  // of a link's row
  std::int32_t lastElement_ = 0;
};

}  // namespace merivane::reconcile
