#include "platform/thread_slot.h"

#include <windows.h>

#include <memory>
#include <new>

namespace zavrel {
namespace {

// Fibre-local storage is thread-local storage with a callback at the end of a thread, as long as
// threads create no fibres. The callback receives only the pointer, so the cell holds its
// destructor.
struct Cell {
  ThreadSlot::Destructor destructor;
  void* pointer;
};

void WINAPI DestroyCell(void* cell) {
  const std::unique_ptr<Cell> own(static_cast<Cell*>(cell));
  if (own != nullptr && own->pointer != nullptr) own->destructor(own->pointer);
}

DWORD IndexOf(std::uintptr_t slot) { return static_cast<DWORD>(slot); }

}  // namespace

ThreadSlot::ThreadSlot(Destructor destructor)
    : destructor_(destructor), slot_(FlsAlloc(DestroyCell)) {}

// Calls the callback for the cell of every thread.
ThreadSlot::~ThreadSlot() {
  if (slot_ != FLS_OUT_OF_INDEXES) FlsFree(IndexOf(slot_));
}

bool ThreadSlot::ok() const noexcept { return slot_ != FLS_OUT_OF_INDEXES; }

void* ThreadSlot::Get() const noexcept {
  if (slot_ == FLS_OUT_OF_INDEXES) return nullptr;
  const auto* cell = static_cast<const Cell*>(FlsGetValue(IndexOf(slot_)));
  return cell == nullptr ? nullptr : cell->pointer;
}

bool ThreadSlot::Set(void* pointer) noexcept {
  if (slot_ == FLS_OUT_OF_INDEXES) return false;
  if (auto* cell = static_cast<Cell*>(FlsGetValue(IndexOf(slot_)))) {
    cell->pointer = pointer;
    return true;
  }
  std::unique_ptr<Cell> cell(new (std::nothrow) Cell{destructor_, pointer});
  if (cell == nullptr || !FlsSetValue(IndexOf(slot_), cell.get())) return false;
  return cell.release() != nullptr;  // DestroyCell takes it back
}

}  // namespace zavrel
