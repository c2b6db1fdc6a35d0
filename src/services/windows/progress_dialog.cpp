#include "services/progress_dialog.h"

#include <windows.h>

// After windows.h.
#include <commctrl.h>

#include <cmath>
#include <string>
#include <thread>

#include "contracts/message_ids.h"
#include "diagnostics/log_line.h"
#include "frame/session.h"
#include "platform/clock.h"
#include "platform/module.h"
#include "platform/operating_system.h"
#include "platform/thread_exceptions.h"
#include "platform/windows/system_handle.h"
#include "platform/windows/wide.h"
#include "services/windows/dialog_template.h"
#include "services/windows/disabled_window.h"

namespace zavrel::services {
namespace {

constexpr DWORD kDelayMilliseconds = 1000;
constexpr DWORD kRefreshMilliseconds = 100;
enum Control : std::uint16_t { kStepText = 100, kBar, kShareText };

struct Texts {
  std::u16string title;
  std::u16string cancel;
  std::u16string cancelling;
  std::u16string share;  // with a placeholder for the percentage
};

std::u16string SessionText(std::int32_t id) {
  const Session* const session = Session::Current();
  return session != nullptr ? session->MessageText(id) : std::u16string();
}

DialogTemplate TemplateOf(const Texts& texts) {
  constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
  DialogTemplate dialog(kStyle, WS_EX_TOPMOST, 230, 68, texts.title);
  dialog.Add(u"STATIC", SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS, {8, 8, 214, 10}, kStepText);
  dialog.Add(u"msctls_progress32", PBS_SMOOTH, {8, 24, 182, 11}, kBar);
  dialog.Add(u"STATIC", SS_RIGHT | SS_NOPREFIX, {192, 25, 30, 10}, kShareText);
  dialog.Add(u"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP, {160, 46, 62, 15}, IDCANCEL, texts.cancel);
  return dialog;
}

/// Lets dialogs of this thread be sharp on every screen, where the system knows that. Excel itself
/// may be one that the system enlarges.
void BeAwareOfScreens() {
  const auto user = LoadedModule::ByName(u"user32");
  const ExportAddress address = user ? user->FindExport("SetThreadDpiAwarenessContext") : nullptr;
  if (address != nullptr)
    AsFunction<void * WINAPI(void*)>(address)(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
}

void PutInMiddleOf(HWND dialog, HWND owner) {
  RECT frame, around;
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &monitor);
  if (owner == nullptr || !GetWindowRect(owner, &around)) around = monitor.rcWork;
  GetWindowRect(dialog, &frame);
  const LONG width = frame.right - frame.left, height = frame.bottom - frame.top;
  SetWindowPos(dialog, nullptr, (around.left + around.right - width) / 2,
               (around.top + around.bottom - height) / 2, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

}  // namespace

/// The dialog on its thread. It has no owner in Windows' sense: a window with an owner of another
/// thread shares that thread's input, and would be dead while it computes.
class ProgressDialog::Window {
 public:
  Window(Progress& progress, HWND owner, Texts texts, bool may_be_forsaken)
      : progress_(progress),
        may_be_forsaken_(may_be_forsaken),
        owner_(owner),
        texts_(std::move(texts)),
        has_ended_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
        is_gone_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    if (!has_ended_ || !is_gone_) return;
    progress_.when_shown_ = [this] { owner_.Disable(); };
    thread_ = std::thread([this] { Run(); });
  }

  /// The owner is enabled while the dialog is still there: otherwise Windows would bring another
  /// program to the front.
  ~Window() {
    owner_.Enable();
    if (!thread_.joinable()) return;
    const HWND dialog = dialog_;
    if (dialog != nullptr && GetForegroundWindow() == dialog && owner_.window() != nullptr)
      SetForegroundWindow(owner_.window());
    SetEvent(has_ended_.get());
    WaitUntilGone();
    thread_.join();
    progress_.is_shown_ = false;
    progress_.when_shown_ = nullptr;
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

 private:
  /// A window that is closed may send a message to the one that becomes active.
  void WaitUntilGone() const {
    const HANDLE gone = is_gone_.get();
    while (MsgWaitForMultipleObjects(1, &gone, FALSE, INFINITE, QS_SENDMESSAGE) != WAIT_OBJECT_0) {
      MSG message;
      PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
  }

  void Run() noexcept {
    if (SetUpThreadExceptions()) ShowUntilEnded();
    SetEvent(is_gone_.get());
  }

  void ShowUntilEnded() noexcept {
    try {
      NameThisThread("zavrel progress");
      if (WaitForSingleObject(has_ended_.get(), kDelayMilliseconds) == WAIT_TIMEOUT && Create()) {
        Serve();
        DestroyWindow(dialog_);
      }
    } catch (...) {  // without memory, there is no dialog
    }
  }

  bool Create() {
    BeAwareOfScreens();
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&classes);
    const HWND dialog =
        CreateDialogIndirectParamW(GetModuleHandleW(nullptr), TemplateOf(texts_).get(), nullptr,
                                   &Receive, reinterpret_cast<LPARAM>(this));
    if (dialog == nullptr) return false;
    PutInMiddleOf(dialog, owner_.window());
    Refresh(dialog);
    ShowWindow(dialog, SW_SHOW);
    SetForegroundWindow(dialog);
    dialog_ = dialog;
    progress_.is_shown_.store(true, std::memory_order_release);
    return true;
  }

  void Serve() {
    const HANDLE ended = has_ended_.get();
    while (MsgWaitForMultipleObjects(1, &ended, FALSE, kRefreshMilliseconds, QS_ALLINPUT) !=
           WAIT_OBJECT_0) {
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (IsDialogMessageW(dialog_, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
      Refresh(dialog_);
      if (IsForsaken()) return;
    }
  }

  bool IsForsaken() const {
    return may_be_forsaken_ &&
           TickCountMilliseconds() - progress_.state().told_at > kForsakenMilliseconds;
  }

  void Refresh(HWND dialog) {
    const auto [text, share, told_at] = progress_.state();
    const bool is_cancelled = progress_.stop_.stop_requested();
    const auto percent = static_cast<std::int64_t>(std::floor(share * 100));
    Show(dialog, kStepText, is_cancelled ? texts_.cancelling : text);
    Show(dialog, kShareText, ComposeMessage(texts_.share, {percent}));
    SendDlgItemMessageW(dialog, kBar, PBM_SETPOS, static_cast<WPARAM>(percent), 0);
    EnableWindow(GetDlgItem(dialog, IDCANCEL), !is_cancelled);
  }

  /// Only what has changed, since a window flickers whenever its text is set.
  static void Show(HWND dialog, Control control, const std::u16string& text) {
    const HWND window = GetDlgItem(dialog, control);
    std::wstring shown(text.size() + 2, L'\0');
    shown.resize(static_cast<std::size_t>(
        GetWindowTextW(window, shown.data(), static_cast<int>(shown.size()))));
    if (const std::wstring wide = ToWide(text); shown != wide) SetWindowTextW(window, wide.c_str());
  }

  /// The Esc key and the cross come as the button does.
  static INT_PTR CALLBACK Receive(HWND dialog, UINT message, WPARAM parameter,
                                  LPARAM window) noexcept {
    if (message == WM_INITDIALOG) {
      SetWindowLongPtrW(dialog, DWLP_USER, window);
      return TRUE;
    }
    if (message != WM_COMMAND || LOWORD(parameter) != IDCANCEL) return FALSE;
    reinterpret_cast<Window*>(GetWindowLongPtrW(dialog, DWLP_USER))->progress_.Cancel();
    return TRUE;
  }

  Progress& progress_;
  bool may_be_forsaken_;
  DisabledWindow owner_;
  Texts texts_;
  SystemHandle has_ended_;  // the work
  SystemHandle is_gone_;    // the dialog
  std::atomic<HWND> dialog_ = nullptr;
  std::thread thread_;
};

ProgressDialog::ProgressDialog(Progress& progress, void* owner_window, std::u16string_view title,
                               bool may_be_forsaken) {
  try {
    window_ = std::make_unique<Window>(
        progress, static_cast<HWND>(owner_window),
        Texts{std::u16string(title), SessionText(messages::kMessageCancel),
              SessionText(messages::kMessageCancelling), SessionText(messages::kMessageShare)},
        may_be_forsaken);
  } catch (...) {
    progress.when_shown_ = nullptr;
    LogLine("No progress dialog\n");
  }
}

ProgressDialog::~ProgressDialog() = default;

}  // namespace zavrel::services
