// The dialog as a user has it. Without a display, as the tests ordinarily run under Wine, only what
// concerns the work is tested; with_display.py runs the rest where there is a virtual display.
#include "services/progress_dialog.h"

#include <doctest/doctest.h>
#include <windows.h>

// After windows.h.
#include <commctrl.h>
#include <tlhelp32.h>

#include <chrono>
#include <string>
#include <thread>
#include <utility>

#include "frame/session.h"
#include "platform/module.h"
#include "platform/windows/system_handle.h"
#include "support/fake_excel.h"
#include "support/quiet_services.h"

namespace zavrel::services {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kPatience{20};

HWND Dialog() { return FindWindowW(nullptr, L"Zavrel test progress"); }

std::wstring TextOf(HWND dialog, int control) {
  wchar_t text[200];
  return {text, GetDlgItemTextW(dialog, control, text, 200)};
}

/// Polls as work does, until the condition holds.
template <class Condition>
bool WorkUntil(Progress& progress, Condition condition) {
  const auto deadline = Clock::now() + kPatience;
  while (!condition() && Clock::now() < deadline) {
    progress.cancelled();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return condition();
}

DWORD Handles() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return count;
}

int Threads() {
  const SystemHandle all(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  int count = 0;
  for (BOOL found = Thread32First(all.get(), &entry); found; found = Thread32Next(all.get(), &entry))
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  return count;
}

TEST_CASE("1,000 short works leave neither a thread nor a handle, and show nothing") {
  WithProgress(nullptr, u"Zavrel test progress", [](Progress&) {});
  const DWORD handles = Handles();
  const int threads = Threads();
  const auto start = Clock::now();
  for (int i = 0; i < 1000; ++i) {
    WithProgress(nullptr, u"Zavrel test progress", [](Progress& progress) {
      progress.Step(u"short", 0.5);
      return progress.cancelled();
    });
  }
  MESSAGE("1,000 works: ", std::chrono::duration<double>(Clock::now() - start).count(), " s");
  CHECK(Handles() <= handles + 2);
  CHECK(Threads() == threads);
  CHECK(Dialog() == nullptr);
}

TEST_CASE("long work without a display ends as it would without a dialog") {
  bool has_worked = false;
  WithProgress(nullptr, u"Zavrel test progress", [&](Progress& progress) {
    progress.Step(u"long", 0.5);
    std::this_thread::sleep_for(std::chrono::milliseconds(1300));
    has_worked = !progress.cancelled();
  });
  CHECK(has_worked);
}

/// A window of this thread, as Excel's.
class OwnerWindow {
 public:
  OwnerWindow()
      : window_(CreateWindowExW(0, L"STATIC", L"Zavrel test owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                50, 50, 700, 400, nullptr, nullptr, nullptr, nullptr)) {
    SetForegroundWindow(window_);
  }
  ~OwnerWindow() { DestroyWindow(window_); }
  OwnerWindow(const OwnerWindow&) = delete;
  OwnerWindow& operator=(const OwnerWindow&) = delete;
  HWND get() const { return window_; }

 private:
  HWND window_;
};

TEST_SUITE_BEGIN("with a display" * doctest::skip());

TEST_CASE("the dialog appears after a second, shows steps, and disables its owner meanwhile") {
  const OwnerWindow owner;
  const auto start = Clock::now();
  WithProgress(owner.get(), u"Zavrel test progress", [&](Progress& progress) {
    progress.Step(u"Reading A1:B2 && more", 0.25);
    REQUIRE(WorkUntil(progress, [] { return Dialog() != nullptr && IsWindowVisible(Dialog()); }));
    CHECK(Clock::now() - start >= std::chrono::seconds(1));
    CHECK(WorkUntil(progress, [&] { return !IsWindowEnabled(owner.get()); }));
    CHECK(TextOf(Dialog(), 100) == L"Reading A1:B2 && more");
    progress.Step(u"Computing", 2.0);
    CHECK(WorkUntil(progress, [] { return TextOf(Dialog(), 100) == L"Computing"; }));
    CHECK(SendDlgItemMessageW(Dialog(), 101, PBM_GETPOS, 0, 0) == 100);
  });
  CHECK(IsWindowEnabled(owner.get()));
  CHECK(Dialog() == nullptr);
}

TEST_CASE("the button and the Esc key cancel, while the thread of the owner computes") {
  for (const bool by_key : {false, true}) {
    const OwnerWindow owner;
    CAPTURE(by_key);
    const int threads = Threads();
    WithProgress(owner.get(), u"Zavrel test progress", [&](Progress& progress) {
      progress.Step(u"long", 0.1);
      REQUIRE(WorkUntil(progress, [] { return Dialog() != nullptr && IsWindowVisible(Dialog()); }));
      const HWND button = GetDlgItem(Dialog(), IDCANCEL);
      PostMessageW(button, by_key ? WM_KEYDOWN : BM_CLICK, by_key ? VK_ESCAPE : 0, 0);
      CHECK(WorkUntil(progress, [&] { return progress.cancelled(); }));
      CHECK(progress.stop_token().stop_requested());
      CHECK(WorkUntil(progress, [&] { return !IsWindowEnabled(button); }));
    });
    CHECK(Threads() == threads);
    CHECK(IsWindowEnabled(owner.get()));
  }
}

TEST_CASE("an exception closes the dialog and enables its owner; a disabled owner stays so") {
  const OwnerWindow owner;
  const auto fail = [](Progress& progress) {
    WorkUntil(progress, [] { return Dialog() != nullptr; });
    WorkUntil(progress, [count = 0]() mutable { return ++count > 20; });
    throw 1;
  };
  CHECK_THROWS_AS(WithProgress(owner.get(), u"Zavrel test progress", fail), int);
  CHECK(IsWindowEnabled(owner.get()));
  CHECK(Dialog() == nullptr);
  EnableWindow(owner.get(), FALSE);
  CHECK_THROWS_AS(WithProgress(owner.get(), u"Zavrel test progress", fail), int);
  CHECK_FALSE(IsWindowEnabled(owner.get()));
}

/// The session that has the texts of the product, in a host that announces this language.
class ProductSession {
 public:
  explicit ProductSession(std::uint32_t language) {
    SessionServices services = tests::QuietServices();
    services.messages = [] { return MessageLibrary::Open(HostExecutablePath().parent_path()); };
    Session::Open({.name = u"Sample", .tables = {}}, std::move(services));
    Announcement announcement;
    announcement.application_id = 5;
    announcement.language_id = language;
    Session::Current()->Announce(announcement);
  }
  ~ProductSession() { Session::Close(); }
  ProductSession(const ProductSession&) = delete;
  ProductSession& operator=(const ProductSession&) = delete;

 private:
  tests::FakeExcel excel_;
};

/// Whether the text of a control is no wider than the control, less a margin on both sides.
bool Fits(HWND dialog, int control, int margin) {
  const HWND window = GetDlgItem(dialog, control);
  const HDC device = GetDC(window);
  SelectObject(device, reinterpret_cast<HGDIOBJ>(SendMessageW(window, WM_GETFONT, 0, 0)));
  const std::wstring text = TextOf(dialog, control);
  SIZE size{};
  GetTextExtentPoint32W(device, text.c_str(), static_cast<int>(text.size()), &size);
  ReleaseDC(window, device);
  RECT area{};
  GetClientRect(window, &area);
  return size.cx + 2 * margin <= area.right && size.cy <= area.bottom;
}

TEST_CASE("the texts are in the session's language and fit") {
  const struct {
    std::uint32_t language;
    const wchar_t *cancel, *cancelling, *share;
  } languages[] = {{9, L"Cancel", L"Cancelling ...", L"100%"},
                   {7, L"Abbrechen", L"Wird abgebrochen ...", L"100 %"}};
  for (const auto& [language, cancel, cancelling, share] : languages) {
    const ProductSession session(language);
    CAPTURE(language);
    WithProgress(nullptr, u"Zavrel test progress", [&](Progress& progress) {
      progress.Step(u"Principal components of 1,048,576 observations", 1);
      REQUIRE(WorkUntil(progress, [] { return Dialog() != nullptr && IsWindowVisible(Dialog()); }));
      CHECK(TextOf(Dialog(), IDCANCEL) == cancel);
      CHECK(TextOf(Dialog(), 102) == share);
      CHECK(Fits(Dialog(), IDCANCEL, 4));
      CHECK(Fits(Dialog(), 100, 0));
      CHECK(Fits(Dialog(), 102, 0));
      PostMessageW(Dialog(), WM_CLOSE, 0, 0);
      CHECK(WorkUntil(progress, [&] { return TextOf(Dialog(), 100) == cancelling; }));
      CHECK(progress.cancelled());
    });
  }
}

TEST_SUITE_END();

}  // namespace
}  // namespace zavrel::services
