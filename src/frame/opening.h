#pragma once

#include "frame/session.h"

namespace zavrel {

/// Finds Excel's callback, opens the session and registers what is always registered. False after a
/// failure, which a message box has shown; nothing is left open then.
bool OpenAddIn(AddIn add_in,
               SessionServices (*services)() = &SessionServices::OfThisMachine) noexcept;

/// Opens the add-in again as it was last opened in this process. False if it fails or if the add-in
/// was never open.
bool ReopenAddIn() noexcept;

/// Closes the session, if one is open; within a call, when the outermost one ends.
void CloseAddIn() noexcept;

/// A call into the add-in, while it lives: it holds what the session owns. Excel may close the
/// add-in from within it, as a macro of an event can have it do. Excel's main thread only.
class RunningCall {
 public:
  RunningCall() noexcept { ++running_; }
  ~RunningCall();
  RunningCall(const RunningCall&) = delete;
  RunningCall& operator=(const RunningCall&) = delete;

 private:
  friend bool OpenAddIn(AddIn add_in, SessionServices (*services)()) noexcept;
  friend void CloseAddIn() noexcept;

  static inline int running_ = 0;
  static inline bool closes_ = false;  // at the end of the outermost
};

}  // namespace zavrel
