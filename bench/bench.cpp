// Measures both directions and prints the times beside their floors. One argument picks a part:
// model, plan, mpx or xml; none runs all.
#include <cstring>

#include "bench_support.h"

int main(int argc, char** argv) {
  const auto wanted = [&](const char* part) { return argc < 2 || std::strcmp(argv[1], part) == 0; };
  if (wanted("model")) merivane::bench::MeasureModelToPlan();
  if (wanted("plan")) merivane::bench::MeasurePlanToModel();
  if (wanted("mpx")) merivane::bench::MeasureMpxToModel();
  if (wanted("xml")) merivane::bench::MeasurePlanningXml();
}
