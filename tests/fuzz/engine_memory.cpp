#include <sanitizer/asan_interface.h>
#include <sqlite3.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <deque>

#include "memory_file.h"

namespace merivane::fuzz {

namespace {

// In front of each piece.
struct alignas(std::max_align_t) Head {
  int size;  // of the piece
};

constexpr int kSmallest = 16;
constexpr int kGreatest = 1 << 16;  // beyond, the pieces are the sanitizer's

int RoundUp(int size) {
  if (size > kGreatest) return (size + 7) & ~7;
  return size <= kSmallest ? kSmallest
                           : static_cast<int>(std::bit_ceil(static_cast<unsigned>(size)));
}

// The free pieces of a size. SQLite gives back some at the very end.
std::deque<Head*>& ListOf(int size) {
  static auto& lists = *new std::array<std::deque<Head*>, 32>;
  return lists[static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(size)))];
}

Head* HeadOf(void* piece) { return static_cast<Head*>(piece) - 1; }

void* Take(int wanted) {
  const int size = RoundUp(wanted);
  Head* head = nullptr;
  if (size > kGreatest || ListOf(size).empty()) {
    head = static_cast<Head*>(std::malloc(sizeof(Head) + static_cast<std::size_t>(size)));
    if (head == nullptr) return nullptr;
    head->size = size;
  } else {
    head = ListOf(size).front();
    ListOf(size).pop_front();
  }
  ASAN_UNPOISON_MEMORY_REGION(head + 1, static_cast<std::size_t>(size));
  return head + 1;
}

void GiveBack(void* piece) {
  Head* head = HeadOf(piece);
  if (head->size > kGreatest) return std::free(head);
  ASAN_POISON_MEMORY_REGION(piece, static_cast<std::size_t>(head->size));
  ListOf(head->size).push_back(head);
}

int SizeOf(void* piece) { return piece == nullptr ? 0 : HeadOf(piece)->size; }

void* Resize(void* piece, int wanted) {
  if (RoundUp(wanted) == SizeOf(piece)) return piece;
  void* other = Take(wanted);
  if (other == nullptr) return nullptr;
  const int kept = SizeOf(piece) < wanted ? SizeOf(piece) : wanted;
  __builtin_memcpy(other, piece, static_cast<std::size_t>(kept));
  GiveBack(piece);
  return other;
}

int Begin(void*) { return SQLITE_OK; }
void End(void*) {}

}  // namespace

void KeepEngineMemory() {
  static sqlite3_mem_methods methods = {Take,    GiveBack, Resize, SizeOf,
                                        RoundUp, Begin,    End,    nullptr};
  sqlite3_config(SQLITE_CONFIG_MALLOC, &methods);
}

}  // namespace merivane::fuzz
