#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <new>

namespace merivane::test {
namespace {

#ifndef __SANITIZE_ADDRESS__  // which ends the program
TEST(Memory, ThatCanNotBeHadIsAnErrorThatCanBeTold) {
  volatile std::size_t tooMuch = PTRDIFF_MAX - 4096;
  constexpr std::align_val_t kLine{64};
  void* none = nullptr;
  EXPECT_THROW(none = operator new(tooMuch), std::bad_alloc);
  EXPECT_THROW(none = operator new[](tooMuch), std::bad_alloc);
  EXPECT_THROW(none = operator new(tooMuch, kLine), std::bad_alloc);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(operator new(tooMuch, std::nothrow), nullptr);
  EXPECT_EQ(operator new[](tooMuch, kLine, std::nothrow), nullptr);
  const auto free = [](void* block) { operator delete(block, kLine); };
  const std::unique_ptr<void, decltype(free)> block(operator new(1, kLine), free);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.get()) % 64, 0U);
}
#endif

}  // namespace
}  // namespace merivane::test
