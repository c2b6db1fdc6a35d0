#include <doctest/doctest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>
#include <thread>

#include "diagnostics/log.h"
#include "diagnostics/log_line.h"
#include "platform/utf.h"
#include "support/log_folder.h"

namespace zavrel {
namespace {

namespace fs = std::filesystem;
using tests::LogFolder;

TEST_CASE("the marker file switches the log on, under both of its names") {
  for (const char* marker : {"BrennicLoggingDetail.txt", "BrennicLoggingDetail.txt.txt"}) {
    const LogFolder folder(marker);
    LogFile& log = OpenLog(folder.path(), "Session8");
    CHECK(log.enabled());
    CHECK(log.path() == folder.file());
    CHECK(EnabledLog() == &log);
    LogLine("{} of {}\n", Utf8FromUtf16(u"ü"), 2);
    CloseLog();
    CHECK(EnabledLog() == nullptr);
    CHECK(folder.lines() == "\xC3\xBC of 2\n");
    CHECK(folder.content().find('\n') == 24);  // Tue Nov 24 21:57:49 2026
    CHECK(folder.content()[3] == ' ');
  }
}

TEST_CASE("nothing is written without a folder or through a link") {
  CHECK_FALSE(OpenLog({}, "Session8").enabled());
  const LogFolder folder("BrennicLoggingDetail.txt");
  const fs::path victim = folder.path() / "victim.txt";
  std::ofstream(victim) << "precious";
  std::error_code no_links;
  fs::create_symlink(victim, folder.file(), no_links);
  if (no_links) return;  // this system or user makes none
  CHECK_FALSE(OpenLog(folder.path(), "Session8").enabled());
  CHECK(fs::is_symlink(folder.file()));
  CHECK(fs::file_size(victim) == 8);
  // Nor is the log switched on by one.
  fs::remove(folder.file());
  fs::rename(folder.path() / "BrennicLoggingDetail.txt", folder.path() / "elsewhere.txt");
  fs::create_symlink("elsewhere.txt", folder.path() / "BrennicLoggingDetail.txt");
  CHECK_FALSE(OpenLog(folder.path(), "Session8").enabled());
}

TEST_CASE("without the marker nothing is written, and the old log goes all the same") {
  const LogFolder folder("BrennicLoggingDetail.txt.bak");
  fs::create_directory(folder.path() / "BrennicLoggingDetail.txt");  // a folder is no marker file
  std::ofstream(folder.file()) << "of yesterday";
  LogFile& log = OpenLog(folder.path(), "Session8");
  CHECK_FALSE(log.enabled());
  CHECK(EnabledLog() == nullptr);
  bool composed = false;
  {
    ScopedTrace trace("Operation", [&] {
      composed = true;
      return std::string();
    });
    trace.SetResult([&] {
      composed = true;
      return std::string();
    });
  }
  log.Write("nothing\n");
  LogLine("nothing\n");
  LogComposedLine([&] {
    composed = true;
    return std::string();
  });
  CHECK_FALSE(composed);
  CHECK_FALSE(fs::exists(folder.file()));
}

TEST_CASE("every session starts afresh, and a folder that cannot be written disables the log") {
  const LogFolder folder("BrennicLoggingDetail.txt");
  OpenLog(folder.path(), "Session8").Write("first session\n");
  OpenLog(folder.path(), "Session8").Write("second session\n");
  CloseLog();
  CHECK(folder.lines() == "second session\n");
  fs::remove(folder.file());
  fs::create_directories(folder.file() / "in the way");
  CHECK_FALSE(OpenLog(folder.path(), "Session8").enabled());
}

TEST_CASE("traces say exactly what they are meant to") {
  const LogFolder folder("BrennicLoggingDetail.txt");
  OpenLog(folder.path(), "Session8");
  {
    const ScopedTrace outer("xlAutoOpen");
    ScopedTrace inner("UninitializeXlaInformation", [] { return fmt::format("appid={}", 5); });
    inner.SetResult([] { return "1"; });
  }
  { const ScopedTrace detailed("Write", "a {} %s"); }
  const auto fail = []() -> std::string { throw std::bad_alloc(); };
  {
    ScopedTrace failing("Fail", fail);
    failing.SetResult(fail);
    LogComposedLine(fail);
  }
  LogComposedLine([] { return std::string("a line"); });
  {
    const ScopedTrace closing("xlAutoClose");
    CloseLog();
  }
  CHECK(folder.lines() ==
        "===== xlAutoOpen enter =====\n"
        "===== UninitializeXlaInformation (appid=5) enter =====\n"
        "===== UninitializeXlaInformation (appid=5) = 1 exit =====\n"
        "===== xlAutoOpen () exit =====\n"
        "===== Write (a {} %s) enter =====\n"
        "===== Write (a {} %s) exit =====\n"
        "===== Fail enter =====\n"
        "===== Fail () exit =====\n"
        "a line\n"
        "===== xlAutoClose enter =====\n");
}

TEST_CASE("a trace that began without a log does not end in one") {
  const LogFolder folder("BrennicLoggingDetail.txt");
  {
    const ScopedTrace opening("xlAutoOpen");
    OpenLog(folder.path(), "Session8");
  }
  CloseLog();
  CHECK(folder.lines().empty());
}

TEST_CASE("the background thread flushes while the log is open") {
  const LogFolder folder("BrennicLoggingDetail.txt");
  OpenLog(folder.path(), "Session8").Write("one\n");
  const auto start = std::chrono::steady_clock::now();
  while (folder.lines() != "one\n" &&
         std::chrono::steady_clock::now() - start < std::chrono::seconds(20))
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  CHECK(folder.lines() == "one\n");
  EnabledLog()->Write("two\n");
  CloseLog();
  CHECK(folder.lines() == "one\ntwo\n");
}

TEST_CASE("without the thread each write is in the file at once") {
  const LogFolder folder("BrennicLoggingDetail.txt");
  LogFile log(folder.path(), "Session8", LogFile::Flush::kEachWrite);
  log.Write({"one", " line\n"});
  CHECK(folder.lines() == "one line\n");
}

TEST_CASE("lines of several threads stay whole") {
  const LogFolder folder("BrennicLoggingDetail.txt");
  LogFile& log = OpenLog(folder.path(), "Session8");
  const auto work = [&](std::string_view letter) {
    for (int i = 0; i < 1000; ++i) log.Write({letter, letter, letter, "\n"});
  };
  std::thread other(work, "a");
  work("b");
  other.join();
  CloseLog();
  const std::string lines = folder.lines();
  REQUIRE(lines.size() == 8000);
  int whole = 0;
  for (std::size_t at = 0; at < lines.size(); at += 4) {
    const std::string line = lines.substr(at, 4);
    whole += line == "aaa\n" || line == "bbb\n";
  }
  CHECK(whole == 2000);
}

}  // namespace
}  // namespace zavrel
