#include <doctest/doctest.h>

#include <atomic>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/clock.h"
#include "platform/export.h"
#include "platform/file_version.h"
#include "platform/memory_status.h"
#include "platform/message_box.h"
#include "platform/module.h"
#include "platform/named_mutex.h"
#include "platform/temporary_folder.h"
#include "platform/thread_slot.h"
#include "platform/utf.h"
#include "support/run_program.h"

ZAV_EXPORT int ExportOfTheHost(int number) { return number + 12; }

namespace zavrel {
namespace {

using tests::EnvironmentVariable;

namespace fs = std::filesystem;

TEST_CASE("local time is what asctime says, without its newline") {
  std::string expected;
  std::string text;
  do {  // the second may turn over in between
    const std::time_t now = std::time(nullptr);
    // NOLINTNEXTLINE(bugprone-unsafe-functions,concurrency-mt-unsafe): the model, on one thread
    expected = std::asctime(std::localtime(&now));
    text = LocalTimeText();
  } while (std::time(nullptr) != CalendarSeconds() || expected.substr(0, 19) != text.substr(0, 19));
  CHECK(text + "\n" == expected);
}

TEST_CASE("clocks go forward at their rates") {
  const auto ticks = TickCountMilliseconds();
  const auto counter = PerformanceCounter();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  CHECK(TickCountMilliseconds() - ticks >= 20);
  CHECK(TickCountMilliseconds() - ticks < 30000);
  REQUIRE(counter);
  CHECK(*PerformanceCounter() > *counter);
}

TEST_CASE("memory status is consistent") {
  const MemoryStatus status = ReadMemoryStatus();
  CHECK(status.load_percent >= 1);
  CHECK(status.load_percent <= 100);
  CHECK(status.total_physical > (std::uint64_t{64} << 20));
  CHECK(status.available_physical < status.total_physical);
  CHECK(status.available_virtual <= status.total_virtual);
  const auto used = 100.0 - 100.0 * static_cast<double>(status.available_physical) /
                                static_cast<double>(status.total_physical);
  CHECK(used == doctest::Approx(status.load_percent).epsilon(0.1).scale(20));
}

/// Without the separator that some systems put at the end.
fs::path Plain(const fs::path& folder) {
  return folder.has_filename() ? folder : folder.parent_path();
}

TEST_CASE("temporary folder, and where files go without one") {
  const fs::path usual = TemporaryFolder();
  CHECK(fs::is_directory(usual));
  const std::string missing = (usual / "no such folder").string();
#ifdef _WIN32
  const EnvironmentVariable no_second_folder("TEMP", missing);
  const char* const folder_variable = "TMP";
  const char* const home_variable = "USERPROFILE";
#else
  const char* const folder_variable = "TMPDIR";
  const char* const home_variable = "HOME";
#endif
  const EnvironmentVariable no_folder(folder_variable, missing);
  {
    const EnvironmentVariable at_home(home_variable, usual.string());
    CHECK(Plain(TemporaryFolder()) == Plain(usual));
  }
  {
    const EnvironmentVariable with_separator(folder_variable, usual.string() + "/");
    CHECK(TemporaryFolder().has_filename());
  }
  const EnvironmentVariable homeless(home_variable, missing);
  CHECK(TemporaryFolder().empty());
}

TEST_CASE("a file that carries no version has none") {
  CHECK_FALSE(ReadFileVersion(HostExecutablePath()));
  CHECK_FALSE(ReadFileVersion(ZAVREL_SOURCE_DIR "/CMakeLists.txt"));
  CHECK_FALSE(ReadFileVersion(TemporaryFolder() / "no such file.dll"));
}

TEST_CASE("exports of the host are found, and only those there are") {
  const auto host = LoadedModule::HostExecutable();
  const ExportAddress found = host.FindExport("ExportOfTheHost");
  REQUIRE(found != nullptr);
  CHECK(AsFunction<int(int)>(found)(30) == 42);
  CHECK(host.FindExport("NoExportOfTheHost") == nullptr);
  const auto program = Module::Load(HostExecutablePath());
  REQUIRE(program);
  CHECK(program->FindExport("ExportOfTheHost") == found);
  CHECK_FALSE(LoadedModule::ByName(u"no_such_library_anywhere"));

  const auto* here = reinterpret_cast<const void*>(&ExportOfTheHost);
  CHECK(PathOfModuleContaining(here) == HostExecutablePath());
  const int on_the_stack = 0;
  CHECK(PathOfModuleContaining(&on_the_stack).empty());
}

TEST_CASE("a library is loaded by its full path or not at all") {
  CHECK_FALSE(Module::Load("relative.dll"));
  CHECK_FALSE(Module::Load(TemporaryFolder() / "no such file.dll"));
  const fs::path broken = TemporaryFolder() / u"zavrel bröken.dll";
  std::ofstream(broken) << "MZ, but no library";
  std::string problem;
  CHECK_FALSE(Module::Load(broken, &problem));
  CHECK(!problem.empty());
  fs::remove(broken);
}

TEST_CASE("error boxes go to the handler") {
  std::vector<std::u16string> told;
  SetMessageBoxHandler([&](const std::u16string& title, const std::u16string& text) {
    SetMessageBoxHandler({});  // a handler may take itself away
    told = {title, text};
  });
  CHECK(ShowErrorBox(u"title", u"text"));
  CHECK(told == std::vector<std::u16string>{u"title", u"text"});
  const EnvironmentVariable shown("ZAVREL_NO_MESSAGE_BOX", "");
  SuppressErrorBoxes();
  CHECK_FALSE(ShowErrorBox(u"title", u"read by nobody"));
}

std::atomic<int> destroyed = 0;
void* NewNumber(int number) { return std::make_unique<int>(number).release(); }
void DestroyNumber(void* number) {
  const std::unique_ptr<int> own(static_cast<int*>(number));
  ++destroyed;
}

TEST_CASE("a thread's pointer is destroyed when the thread ends, and no other's") {
  destroyed = 0;
  ThreadSlot slot(DestroyNumber);
  CHECK(slot.Get() == nullptr);
  REQUIRE(slot.Set(NewNumber(1)));
  std::thread([&] {
    CHECK(slot.Get() == nullptr);
    CHECK(slot.Set(NewNumber(2)));
    CHECK(*static_cast<int*>(slot.Get()) == 2);
  }).join();
  CHECK(destroyed == 1);
  CHECK(*static_cast<int*>(slot.Get()) == 1);
}

TEST_CASE("closing a slot destroys the pointers of all threads, those still running included") {
  destroyed = 0;
  std::atomic<int> set = 0;
  std::atomic<bool> closed = false;
  std::vector<std::thread> threads;
  {
    ThreadSlot slot(DestroyNumber);
    REQUIRE(slot.Set(NewNumber(0)));
    for (int i = 0; i < 3; ++i) {
      threads.emplace_back([&] {
        slot.Set(NewNumber(1));
        ++set;
        while (!closed) std::this_thread::yield();
      });
    }
    while (set < 3) std::this_thread::yield();
  }
  CHECK(destroyed == 4);
  closed = true;
  for (std::thread& thread : threads) thread.join();
  CHECK(destroyed == 4);

  const ThreadSlot next(DestroyNumber);  // may get the same place in the system
  CHECK(next.Get() == nullptr);
}

TEST_CASE("a named lock excludes all who name it, and lets its holder in again") {
  NamedLock lock(u"zavrel test lock");
  int count = 0;
  const auto work = [&] {
    NamedLock same(u"zavrel test lock");
    for (int i = 0; i < 2000; ++i) {
      const std::lock_guard once(same);
      const std::lock_guard twice(lock);
      const int before = count;
      if (i % 100 == 0) std::this_thread::yield();
      count = before + 1;
    }
  };
  std::thread other(work);
  work();
  other.join();
  CHECK(count == 4000);
}

TEST_CASE("UTF-8 and UTF-16 are turned into each other") {
  const std::u16string wide = u"a ä € 😀\uFFFF\U0010FFFF";
  const std::string narrow = "a \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80\xEF\xBF\xBF\xF4\x8F\xBF\xBF";
  CHECK(Utf8FromUtf16(wide) == narrow);
  CHECK(Utf16FromUtf8(narrow) == wide);
  CHECK(IsValidUtf8(narrow));
  CHECK(Utf8FromPath(fs::path(u"x/ä")) == "x/\xC3\xA4");

  const char16_t lone[] = {u'a', 0xDC00, 0xD800, u'b', 0xD83D, 0};
  CHECK(Utf8FromUtf16(lone) ==
        "a\xEF\xBF\xBD\xEF\xBF\xBD"
        "b\xEF\xBF\xBD");
}

TEST_CASE("malformed UTF-8 has one U+FFFD for each run that could have begun a character") {
  const struct {
    const char* text;
    std::u16string_view decoded;
  } cases[] = {
      {"a\x80", u"a\uFFFD"},                                  // stray
      {"\xC0\xAF", u"\uFFFD\uFFFD"},                          // overlong
      {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},                // overlong
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},                // a surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},      // beyond the last one
      {"\xE2\x82", u"\uFFFD"},                                // cut short
      {"\xE2\x82z\xF0\x9F\x98", u"\uFFFDz\uFFFD"},            // cut short twice
      {"\xF1\x80\x80\xE1\x80\xC2z", u"\uFFFD\uFFFD\uFFFDz"},  // one after another
      {"\xFF\xC3\xA4\xFE", u"\uFFFDä\uFFFD"},                 // no bytes of UTF-8
  };
  for (const auto& [text, decoded] : cases) {
    CAPTURE(Utf8FromUtf16(decoded));
    CHECK(Utf8FromUtf16(Utf16FromUtf8(text)) == Utf8FromUtf16(decoded));
    CHECK_FALSE(IsValidUtf8(text));
  }
}

}  // namespace
}  // namespace zavrel
