// What a task, a resource or an assignment has any number of: baselines, values spread over time,
// rates, availability.
#pragma once

#include "custom_fields.h"
#include "owned_rows.h"

namespace merivane::mspdi {

// Baselines 1 to 10; the first, 0, stands in the owner's own row.
class Baselines {
 public:
  // Those of a number beyond 10 are left out.
  Baselines(Connection& connection, std::int32_t project, Owner owner);

  void Write(std::int64_t uid, Element& element, const char* name) const;

 private:
  Owner owner_;
  OwnedRows rows_;
};

// Work and cost by day, hour or another period. They keep a split task where it is.
class TimephasedData {
 public:
  TimephasedData(Connection& connection, std::int32_t project);

  // Periods of nothing are left out; so are rows without a beginning or of an unknown kind.
  // `written` is the owner's UID in the file.
  void Write(Owner owner, std::int64_t uid, std::int64_t written, Element& element,
             const char* name) const;

 private:
  void WritePeriods(const Row& row, std::int64_t uid, Element& element, const char* name) const;

  OwnedRows rows_;
};

class RatesOfResources {
 public:
  RatesOfResources(Connection& connection, std::int32_t project);
  void WriteAvailability(std::int64_t uid, Element& element, const char* name) const;
  void WriteRates(std::int64_t uid, Element& element, const char* name) const;

 private:
  OwnedRows availability_;
  OwnedRows rates_;
};

}  // namespace merivane::mspdi
