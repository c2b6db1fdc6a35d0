#include "services/progress.h"

#include <algorithm>
#include <utility>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "platform/clock.h"

namespace zavrel::services {

void Progress::Step(std::u16string_view text, double share) noexcept {
  try {
    std::u16string copy(text);
    const std::lock_guard lock(text_mutex_);
    std::swap(text_, copy);
  } catch (...) {  // without memory, the text of the step before stays
  }
  Advance(share);
}

void Progress::StepUnlessCancelled(std::u16string_view text, double share) {
  Step(text, share);
  if (cancelled()) throw VekUserCancelled("Progress", messages::kMessageUserCancelled);
}

void Progress::Advance(double share) noexcept {
  share_.store(share, std::memory_order_relaxed);
  told_at_.store(TickCountMilliseconds(), std::memory_order_relaxed);
  cancelled();
}

bool Progress::cancelled() noexcept {
  if (is_shown_.load(std::memory_order_acquire) && when_shown_) when_shown_();
  return stop_.stop_requested();
}

Progress::State Progress::state() const {
  const double share = share_.load(std::memory_order_relaxed);
  const std::lock_guard lock(text_mutex_);
  return {text_, share > 0 ? std::min(share, 1.0) : 0.0,  // not a number: nothing is done yet
          told_at_.load(std::memory_order_relaxed)};
}

}  // namespace zavrel::services
