#include "platform/standing_threads.h"

#include <windows.h>

#include "platform/thread_exceptions.h"

namespace zavrel {
namespace {

struct Call {
  void (*work)(void* context);
  void* context;
};

void CALLBACK Begin(PTP_CALLBACK_INSTANCE, void* call, PTP_WORK) {
  const Call& own = *static_cast<Call*>(call);
  if (SetUpThreadExceptions()) own.work(own.context);
}

}  // namespace

// The threads belong to the system. Between two sections none of them refers to this library, which
// can be unloaded at any time.
void CallOnStandingThreads(std::size_t others, void (*work)(void* context),
                           void* context) noexcept {
  Call call{work, context};
  PTP_WORK pool_work = CreateThreadpoolWork(Begin, &call, nullptr);
  if (pool_work == nullptr) return work(context);
  for (std::size_t i = 0; i < others; ++i) SubmitThreadpoolWork(pool_work);
  work(context);
  WaitForThreadpoolWorkCallbacks(pool_work, TRUE);
  CloseThreadpoolWork(pool_work);
}

}  // namespace zavrel
