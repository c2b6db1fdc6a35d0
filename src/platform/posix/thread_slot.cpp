#include "platform/thread_slot.h"

#include <pthread.h>

#include <memory>
#include <new>
#include <utility>

namespace zavrel {
namespace {

// The system forgets the pointers of a deleted key, so a list links the cells of all threads, under
// one lock for all slots.
struct Cell {
  ThreadSlot::Destructor destructor;
  void* pointer;
  Cell** chain;
  Cell* next;
};

struct Slot {
  pthread_key_t key = 0;
  Cell* cells = nullptr;
};

pthread_mutex_t chain_mutex = PTHREAD_MUTEX_INITIALIZER;

Slot* SlotOf(std::uintptr_t slot) { return reinterpret_cast<Slot*>(slot); }

void Destroy(std::unique_ptr<Cell> cell) {
  if (cell->pointer != nullptr) cell->destructor(cell->pointer);
}

void Unchain(Cell* cell) {
  pthread_mutex_lock(&chain_mutex);
  Cell** link = cell->chain;
  while (*link != cell) link = &(*link)->next;
  *link = cell->next;
  pthread_mutex_unlock(&chain_mutex);
}

void OnThreadEnd(void* pointer) {
  std::unique_ptr<Cell> cell(static_cast<Cell*>(pointer));
  Unchain(cell.get());
  Destroy(std::move(cell));
}

}  // namespace

ThreadSlot::ThreadSlot(Destructor destructor) : destructor_(destructor) {
  auto slot = std::make_unique<Slot>();
  if (pthread_key_create(&slot->key, OnThreadEnd) == 0)
    slot_ = reinterpret_cast<std::uintptr_t>(slot.release());
}

ThreadSlot::~ThreadSlot() {
  const std::unique_ptr<Slot> slot(SlotOf(slot_));
  if (slot == nullptr) return;
  pthread_key_delete(slot->key);
  while (slot->cells != nullptr) {
    std::unique_ptr<Cell> cell(slot->cells);
    slot->cells = cell->next;
    Destroy(std::move(cell));
  }
}

bool ThreadSlot::ok() const noexcept { return slot_ != 0; }

void* ThreadSlot::Get() const noexcept {
  if (slot_ == 0) return nullptr;
  const auto* cell = static_cast<const Cell*>(pthread_getspecific(SlotOf(slot_)->key));
  return cell == nullptr ? nullptr : cell->pointer;
}

bool ThreadSlot::Set(void* pointer) noexcept {
  Slot* slot = SlotOf(slot_);
  if (slot == nullptr) return false;
  if (auto* cell = static_cast<Cell*>(pthread_getspecific(slot->key))) {
    cell->pointer = pointer;
    return true;
  }
  std::unique_ptr<Cell> cell(new (std::nothrow) Cell{destructor_, pointer, &slot->cells, nullptr});
  if (cell == nullptr || pthread_setspecific(slot->key, cell.get()) != 0) return false;
  pthread_mutex_lock(&chain_mutex);
  cell->next = slot->cells;
  slot->cells = cell.release();
  pthread_mutex_unlock(&chain_mutex);
  return true;
}

}  // namespace zavrel
