#pragma once
// The diagnostic log: a text file in the temporary folder, written only if a user put the marker
// file "BrennicLoggingDetail.txt" into that folder.

#include <atomic>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>

namespace zavrel {

/// One log file, from opening to closing. Its text is UTF-8 with plain line feeds. Any thread may
/// write; a log that is disabled, or whose file cannot be written, ignores all writes.
class LogFile {
 public:
  enum class Flush {
    kEachWrite,     // nothing is lost if the process dies; for the suite's other libraries
    kInBackground,  // a thread flushes at most every 500 ms; at most that much is lost
  };

  /// Starts a new "<name>.log" in the folder. An old file is deleted, even if the log is disabled.
  /// The first line is the local time. The log stays disabled without a folder, and if something
  /// that is no file has its name: no link is followed.
  LogFile(const std::filesystem::path& folder, std::string_view name, Flush flush);
  /// Ends the thread, flushes and closes.
  ~LogFile();
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  const std::filesystem::path& path() const { return path_; }
  bool enabled() const { return enabled_; }

  /// Appends the parts unchanged in one write; each line has its own "\n".
  void Write(std::initializer_list<std::string_view> parts) noexcept;
  void Write(std::string_view text) noexcept { Write({text}); }

 private:
  void StartFlushing();
  void FlushUntilClosed();

  std::filesystem::path path_;
  bool enabled_ = false;
  std::mutex file_mutex_;
  std::ofstream file_;
  bool unflushed_ = false;
  std::atomic<bool> thread_runs_ = false;
  std::atomic<bool> closing_ = false;
  std::thread thread_;
};

/// Makes this the session's log, flushed in the background if it is enabled; closes the previous
/// log.
LogFile& OpenLog(const std::filesystem::path& folder, std::string_view name);
void CloseLog();
/// The session's log if it exists and is enabled, otherwise null. Writers call this function, which
/// costs next to nothing, before they compose a line.
LogFile* EnabledLog();

/// Appends one line to the session's log. `compose` returns it as UTF-8 text without its end, and
/// is called only if the log is enabled; a line that cannot be composed is left out.
template <typename Compose>
void LogComposedLine(Compose&& compose) noexcept {
  LogFile* log = EnabledLog();
  if (log == nullptr) return;
  try {
    log->Write({compose(), "\n"});
  } catch (...) {  // logging must never disturb the logged operation
  }
}

/// Traces an operation in the session's log: its start at construction, its end at destruction.
class ScopedTrace {
 public:
  /// `operation` must outlive the trace.
  explicit ScopedTrace(std::string_view operation) noexcept : operation_(operation) {
    if (EnabledLog() != nullptr) Enter();
  }
  /// `compose` returns the detail as UTF-8 text and is called only if the log is enabled.
  template <typename Compose>
  requires std::is_invocable_r_v<std::string, Compose> ScopedTrace(std::string_view operation,
                                                                   Compose&& compose)
  noexcept : operation_(operation) {
    if (EnabledLog() != nullptr) EnterWith(compose);
  }
  ScopedTrace(std::string_view operation, std::string_view detail) noexcept
      : ScopedTrace(operation, [&] { return std::string(detail); }) {}
  ~ScopedTrace();
  ScopedTrace(const ScopedTrace&) = delete;
  ScopedTrace& operator=(const ScopedTrace&) = delete;

  /// Adds a result to the exit line. `compose` returns it as UTF-8 text, empty for none, and is
  /// called only if the trace is written.
  template <typename Compose>
  void SetResult(Compose&& compose) noexcept {
    if (!entered_) return;
    try {
      result_ = compose();
    } catch (...) {  // the exit line has no result then
    }
  }

 private:
  void Enter() noexcept;
  template <typename Compose>
  void EnterWith(Compose&& compose) noexcept {
    try {
      detail_ = compose();
    } catch (...) {  // the trace has no detail then
    }
    Enter();
  }

  std::string_view operation_;
  std::string detail_;
  std::string result_;
  bool entered_ = false;
};

}  // namespace zavrel
