#include "excel/result_holder.h"

#include <memory>
#include <new>
#include <optional>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "platform/never_destroyed.h"
#include "platform/thread_slot.h"

namespace zavrel {
namespace {

struct Holder {
  XXloper result;
};

void DestroyHolder(void* holder) {
  const std::unique_ptr<Holder> owned(static_cast<Holder*>(holder));
}

// Opened and closed on Excel's main thread while no worksheet function runs. Not destroyed when the
// library is unloaded: the system's thread storage may be gone by then.
std::optional<ThreadSlot>& Slot() {
  static NeverDestroyed<std::optional<ThreadSlot>> slot;
  return *slot;
}

Holder* HolderOfThread(ThreadSlot& slot) noexcept {
  if (void* holder = slot.Get()) return static_cast<Holder*>(holder);
  std::unique_ptr<Holder> holder(new (std::nothrow) Holder);
  return holder != nullptr && slot.Set(holder.get()) ? holder.release() : nullptr;
}

// A function of the C API returns a non-const pointer, but Excel only reads the record.
XLOPER12* RecordOf(const XXloper& value) { return const_cast<XLOPER12*>(&value.record()); }

}  // namespace

void OpenResultHolder() {
  if (!Slot()) Slot().emplace(&DestroyHolder);
  if (Slot()->ok()) return;
  Slot().reset();
  throw VekKernelObjectError("OpenResultHolder", messages::kMessageKernelObjectError,
                             {std::u16string(u"thread slot"), std::int64_t{0}});
}

void CloseResultHolder() { Slot().reset(); }

XLOPER12* ReturnToExcel(const XXloper& result) noexcept {
  try {
    if (Slot()) {
      if (Holder* holder = HolderOfThread(*Slot())) {
        holder->result = result.Owned();
        return RecordOf(holder->result);
      }
    }
  } catch (const std::bad_alloc&) {
  }
  return RecordOf(XXloper::Error(ExcelError::kNA));
}

}  // namespace zavrel
