#pragma once
// Long work with a dialog that says how far it is and lets the user cancel it.

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "services/progress.h"

namespace zavrel::services {

/// Shows the progress of the work that the calling thread does while this lives. The dialog has a
/// thread of its own, so that it stays alive while the calling thread computes. It appears once the
/// work has taken a second; its button and the Esc key cancel. From the first poll after that, the
/// owner window is disabled. Where no window can be shown, the work goes on without one.
class ProgressDialog {
 public:
  /// Work that may be stopped without an end, as a macro: its dialog goes when it has said nothing
  /// for this long.
  static constexpr std::uint32_t kForsakenMilliseconds = 60'000;

  /// `owner_window` is the handle of a window of the calling thread, or null. `progress` must live
  /// longer.
  ProgressDialog(Progress& progress, void* owner_window, std::u16string_view title,
                 bool may_be_forsaken = false);
  /// Enables the owner again and closes the dialog; its thread has ended afterwards.
  ~ProgressDialog();
  ProgressDialog(const ProgressDialog&) = delete;
  ProgressDialog& operator=(const ProgressDialog&) = delete;

 private:
  class Window;
  std::unique_ptr<Window> window_;
};

/// Calls work(progress) with a dialog, and returns what it returns. The dialog is gone on every
/// path out of the work.
///
///   WithProgress(owner, title, [&](Progress& progress) {
///     for (std::size_t i = 0; i < count && !progress.cancelled(); ++i) {
///       progress.Step(names[i], static_cast<double>(i) / count);
///       ...
///     }
///   });
template <class Work>
auto WithProgress(void* owner_window, std::u16string_view title, Work&& work) {
  Progress progress;
  const ProgressDialog dialog(progress, owner_window, title);
  return std::forward<Work>(work)(progress);
}

}  // namespace zavrel::services
