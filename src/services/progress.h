#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>

namespace zavrel::services {

/// What long work says of itself, and whether its user wants it to stop. Any thread of the work may
/// call it; nothing waits for a window.
class Progress {
 public:
  /// The step that begins now, as text for the user, and the share of the whole work that is done,
  /// 0 to 1. For the steps of the work and not for its innermost loop.
  void Step(std::u16string_view text, double share) noexcept;
  /// The same, unless the user has cancelled: then it throws VekUserCancelled.
  void StepUnlessCancelled(std::u16string_view text, double share);
  /// The share that is done, within the same step. As cheap as the question below.
  void Advance(double share) noexcept;
  /// True once the user has cancelled. Costs a few nanoseconds, so that a loop can ask often.
  bool cancelled() noexcept;
  /// The same for whoever takes a token.
  std::stop_token stop_token() const noexcept { return stop_.get_token(); }

 private:
  friend class ProgressDialog;

  struct State {
    std::u16string text;
    double share;
    std::uint32_t told_at;  // by the tick count: when the work last said something
  };
  State state() const;
  void Cancel() noexcept { stop_.request_stop(); }

  std::stop_source stop_;
  std::atomic<double> share_ = 0;
  std::atomic<std::uint32_t> told_at_ = 0;
  mutable std::mutex text_mutex_;
  std::u16string text_;
  std::atomic<bool> is_shown_ = false;
  std::function<void()> when_shown_;  // what only the thread of the work may do for the dialog
};

}  // namespace zavrel::services
