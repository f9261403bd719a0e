#include "bring_back.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace merivane::fuzz;
  BringBack(data, size, [](ProjectToModel& state, const std::string& plan, std::int16_t mode) {
    TranslateXml(state, plan, mode);
  });
  return 0;
}
