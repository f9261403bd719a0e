// Where memory runs out, Debian's mimalloc, which is built as C, ends the program in its operators
// new. These ask its malloc, and throw or give null as C++ has it; its operators delete serve both.
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

void* Block(std::size_t size) { return std::malloc(size == 0 ? 1 : size); }

void* Block(std::size_t size, std::align_val_t alignment) {
  const auto unit = static_cast<std::size_t>(alignment);
  if (size > SIZE_MAX - unit) return nullptr;
  return std::aligned_alloc(unit, (size + unit - (size == 0 ? 0 : 1)) / unit * unit);
}

template <typename... Alignment>
void* BlockOrThrow(std::size_t size, Alignment... alignment) {
  for (;;) {
    if (void* block = Block(size, alignment...)) return block;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

template <typename... Alignment>
void* BlockOrNull(std::size_t size, Alignment... alignment) noexcept try {
  return BlockOrThrow(size, alignment...);
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace

void* operator new(std::size_t size) { return BlockOrThrow(size); }
void* operator new[](std::size_t size) { return BlockOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*how*/) noexcept {
  return BlockOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*how*/) noexcept {
  return BlockOrNull(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return BlockOrThrow(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return BlockOrThrow(size, alignment);
}
void* operator new(std::size_t size, std::align_val_t alignment,
                   const std::nothrow_t& /*how*/) noexcept {
  return BlockOrNull(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment,
                     const std::nothrow_t& /*how*/) noexcept {
  return BlockOrNull(size, alignment);
}
