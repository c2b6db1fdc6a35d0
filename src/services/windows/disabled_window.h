#pragma once

#include <windows.h>

namespace zavrel::services {

/// A window that does not react to its user from Disable until Enable, as behind a modal dialog.
/// Only the thread of the window may disable and enable it: Windows would let any other thread wait
/// until the window's thread reads its messages.
class DisabledWindow {
 public:
  /// The window belongs to the calling thread, or is null.
  explicit DisabledWindow(HWND window) noexcept : window_(window), thread_(GetCurrentThreadId()) {}
  ~DisabledWindow() { Enable(); }
  DisabledWindow(const DisabledWindow&) = delete;
  DisabledWindow& operator=(const DisabledWindow&) = delete;

  HWND window() const { return window_; }
  /// Does nothing on other threads, or if somebody else has disabled the window.
  void Disable() noexcept {
    if (window_ == nullptr || GetCurrentThreadId() != thread_ || is_disabled_) return;
    if (!IsWindowEnabled(window_)) return;
    focus_ = GetFocus();
    EnableWindow(window_, FALSE);
    is_disabled_ = true;
  }
  void Enable() noexcept {
    if (!is_disabled_) return;
    is_disabled_ = false;
    EnableWindow(window_, TRUE);
    if (focus_ != nullptr) SetFocus(focus_);
  }

 private:
  HWND window_;
  DWORD thread_;
  HWND focus_ = nullptr;
  bool is_disabled_ = false;
};

}  // namespace zavrel::services
