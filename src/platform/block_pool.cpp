#include "platform/block_pool.h"

#include <array>
#include <atomic>
#include <bit>
#include <new>

namespace zavrel {
namespace {

constexpr std::size_t kSmallestKept = std::size_t{32} << 10;
constexpr std::size_t kMostKept = std::size_t{64} << 20;
constexpr std::size_t kSlots = 16;

struct KeptBlock {
  void* block = nullptr;
  std::size_t bytes = 0;
};

// Constant-initialised and without a destructor, since data sets may be released late in the
// process.
constinit std::array<KeptBlock, kSlots> kept{};
constinit std::size_t kept_bytes = 0;
constinit std::atomic_flag busy{};  // this library's std::mutex needs initialisation at run time

struct Lock {
  Lock() noexcept {
    while (busy.test_and_set(std::memory_order_acquire)) busy.wait(true);
  }
  ~Lock() {
    busy.clear(std::memory_order_release);
    busy.notify_one();
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
};

// Rounds large sizes up to an eighth of their power of two, so that blocks of similar size can
// replace each other.
std::size_t Granted(std::size_t bytes) {
  if (bytes < kSmallestKept) return bytes;
  const std::size_t step = std::bit_floor(bytes) / 8;
  return (bytes + step - 1) & ~(step - 1);
}

void FreeSlot(KeptBlock& slot) noexcept {
  ::operator delete(slot.block);
  kept_bytes -= slot.bytes;
  slot = {};
}

// The slot with the smallest block that fits without wasting as much as it is used.
KeptBlock* BestFit(std::size_t bytes) noexcept {
  KeptBlock* best = nullptr;
  for (KeptBlock& slot : kept) {
    if (slot.bytes >= bytes && slot.bytes / 2 <= bytes &&
        (best == nullptr || slot.bytes < best->bytes))
      best = &slot;
  }
  return best;
}

}  // namespace

void* TakeBlock(std::size_t bytes, std::size_t* granted) {
  const std::size_t size = Granted(bytes);
  if (size < bytes) throw std::bad_alloc();
  if (size >= kSmallestKept) {
    const Lock lock;
    if (KeptBlock* slot = BestFit(size)) {
      void* block = slot->block;
      *granted = slot->bytes;
      kept_bytes -= slot->bytes;
      *slot = {};
      return block;
    }
  }
  void* block = ::operator new(size);
  *granted = size;
  return block;
}

void GiveBlock(void* block, std::size_t granted) noexcept {
  if (granted < kSmallestKept || granted > kMostKept) {
    ::operator delete(block);
    return;
  }
  const Lock lock;
  KeptBlock* smallest = &kept[0];
  for (KeptBlock& slot : kept) {
    if (slot.bytes < smallest->bytes) smallest = &slot;
  }
  if (smallest->block != nullptr) FreeSlot(*smallest);
  while (kept_bytes + granted > kMostKept) {
    KeptBlock* largest = &kept[0];
    for (KeptBlock& slot : kept) {
      if (slot.bytes > largest->bytes) largest = &slot;
    }
    FreeSlot(*largest);
  }
  *smallest = {block, granted};
  kept_bytes += granted;
}

std::size_t ReleaseKeptBlocks() noexcept {
  const Lock lock;
  const std::size_t released = kept_bytes;
  for (KeptBlock& slot : kept) {
    if (slot.block != nullptr) FreeSlot(slot);
  }
  return released;
}

}  // namespace zavrel
