#include "diagnostics/log.h"

#include <chrono>
#include <memory>
#include <system_error>

#include "contracts/log_files.h"
#include "platform/clock.h"
#include "platform/never_destroyed.h"
#include "platform/operating_system.h"
#include "platform/temporary_folder.h"
#include "platform/thread_exceptions.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

constexpr const char* kFlushThreadName = "WorkerThread<class LogFile>::threadProc";
constexpr auto kWakePeriod = std::chrono::milliseconds(1);
constexpr auto kFlushPeriod = std::chrono::milliseconds(500);

std::unique_ptr<LogFile>& SessionLog() {
  // Never destroyed: in a process that ends without closing the session, there is no flush thread
  // left to wait for.
  static NeverDestroyed<std::unique_ptr<LogFile>> log;
  return *log;
}

std::atomic<LogFile*> enabled_log = nullptr;

/// Deletes an earlier log. False if something else has its name: others may write to the folder
/// too, and could have put a link there.
bool RemoveOld(const std::filesystem::path& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::symlink_status(path, error);
  if (!std::filesystem::exists(status)) return true;
  return std::filesystem::is_regular_file(status) && std::filesystem::remove(path, error);
}

}  // namespace

LogFile::LogFile(const std::filesystem::path& folder, std::string_view name, Flush flush)
    : path_(LogFileIn(folder, Utf16FromUtf8(name))) {
  if (folder.empty() || !RemoveOld(path_) || !LogIsOn(folder) || !CreateNewFile(path_)) return;
  file_.open(path_, std::ios::binary | std::ios::trunc);
  enabled_ = file_.is_open();
  Write({LocalTimeText(), "\n"});
  if (enabled_ && flush == Flush::kInBackground) StartFlushing();
}

LogFile::~LogFile() {
  closing_ = true;
  if (thread_.joinable()) thread_.join();
}

void LogFile::Write(std::initializer_list<std::string_view> parts) noexcept {
  if (!enabled_) return;
  try {
    const std::lock_guard guard(file_mutex_);
    for (const std::string_view part : parts)
      file_.write(part.data(), static_cast<std::streamsize>(part.size()));
    if (thread_runs_)
      unflushed_ = true;
    else
      file_.flush();
  } catch (...) {  // logging must never disturb the logged operation
  }
}

void LogFile::StartFlushing() {
  try {
    thread_ = std::thread([this] { FlushUntilClosed(); });
  } catch (const std::system_error&) {  // no thread is available: each write flushes
    return;
  }
  while (!thread_runs_) std::this_thread::yield();
}

void LogFile::FlushUntilClosed() {
  if (SetUpThreadExceptions()) NameThisThread(kFlushThreadName);
  auto flushed_at = std::chrono::steady_clock::now();
  thread_runs_ = true;
  while (!closing_) {
    std::this_thread::sleep_for(kWakePeriod);
    const auto now = std::chrono::steady_clock::now();
    if (now - flushed_at < kFlushPeriod) continue;
    const std::lock_guard guard(file_mutex_);
    if (unflushed_) file_.flush();
    unflushed_ = false;
    flushed_at = now;
  }
}

LogFile& OpenLog(const std::filesystem::path& folder, std::string_view name) {
  CloseLog();
  SessionLog() = std::make_unique<LogFile>(folder, name, LogFile::Flush::kInBackground);
  LogFile& log = *SessionLog();
  enabled_log = log.enabled() ? &log : nullptr;
  return log;
}

void CloseLog() {
  enabled_log = nullptr;
  SessionLog().reset();
}

LogFile* EnabledLog() { return enabled_log.load(std::memory_order_acquire); }

void ScopedTrace::Enter() noexcept {
  LogFile* log = EnabledLog();
  if (log == nullptr) return;
  entered_ = true;
  if (detail_.empty())
    log->Write({"===== ", operation_, " enter =====\n"});
  else
    log->Write({"===== ", operation_, " (", detail_, ") enter =====\n"});
}

// Asks for the log again, since the operation itself may have closed it.
ScopedTrace::~ScopedTrace() {
  LogFile* log = entered_ ? EnabledLog() : nullptr;
  if (log == nullptr) return;
  if (result_.empty())
    log->Write({"===== ", operation_, " (", detail_, ") exit =====\n"});
  else
    log->Write({"===== ", operation_, " (", detail_, ") = ", result_, " exit =====\n"});
}

}  // namespace zavrel
