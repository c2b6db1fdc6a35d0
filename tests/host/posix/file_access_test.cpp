#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "host/workbook/workbook.h"
#include "host/xlsx/file_io.h"
#include "support/book_builder.h"
#include "support/process_limit.h"

using namespace zavhost;
using namespace zavhost_test;
namespace fs = std::filesystem;

TEST_CASE("what is no regular file is neither read nor written over") {
  const TemporaryFolder folder;
  const fs::path pipe = folder.path() / "pipe.xlsx";
  REQUIRE(mkfifo(pipe.c_str(), 0600) == 0);
  CHECK_THROWS_WITH_AS(ReadFile(pipe, 100), "this is not a regular file", WorkbookError);
  CHECK_THROWS_WITH_AS(WriteFile(pipe, "whole"), "this is not a regular file", WorkbookError);
  CHECK(fs::is_fifo(pipe));
}

TEST_CASE("a file that cannot be opened, or gives less than its size, is refused") {
  const TemporaryFolder folder;
  const fs::path file = folder.Put(u"book.xlsx", "whole");
  CHECK(ReadFile(file, 100) == "whole");
  {
    const zavrel::tests::ProcessLimit limit(RLIMIT_NOFILE, 0);
    CHECK_THROWS_WITH_AS(ReadFile(file, 100),
                         "the file cannot be opened; are you permitted to read it?", WorkbookError);
  }
  // The system says that each of these has a page.
  CHECK_THROWS_WITH_AS(ReadFile("/sys/devices/system/cpu/online", 1 << 20),
                       "the file cannot be read to its end", WorkbookError);
}

TEST_CASE("a full disk leaves the old file, and nothing else") {
  const TemporaryFolder folder;
  const fs::path file = folder.Put(u"book.xlsx", "old");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  {
    const zavrel::tests::ProcessLimit limit(RLIMIT_FSIZE, 1000);
    CHECK_THROWS_WITH_AS(WriteFile(file, std::string(1001, 'x')),
                         "the file cannot be written completely; is the disk full?", WorkbookError);
  }
  std::signal(SIGXFSZ, handler);
  CHECK(ReadFile(file, 100) == "old");
  CHECK(std::distance(fs::directory_iterator(folder.path()), {}) == 1);
  WriteFile(file, "new");
  CHECK(fs::status(file).permissions() == (fs::perms::owner_read | fs::perms::owner_write));
}

TEST_CASE("a link stays, and what it leads to is written") {
  const TemporaryFolder folder;
  const fs::path file = folder.Put(u"book.xlsx", "old");
  fs::create_symlink("book.xlsx", folder.path() / "link.xlsx");
  WriteFile(folder.path() / "link.xlsx", "new");
  CHECK(fs::is_symlink(folder.path() / "link.xlsx"));
  CHECK(ReadFile(file, 100) == "new");
  // One that leads nowhere becomes the file.
  fs::create_symlink("absent.xlsx", folder.path() / "dangling.xlsx");
  WriteFile(folder.path() / "dangling.xlsx", "new");
  CHECK(ReadFile(folder.path() / "dangling.xlsx", 100) == "new");
}

TEST_CASE("an unfinished file of another program stays as long as that holds it") {
  const TemporaryFolder folder;
  const fs::path held = folder.Put(u"book.xlsx.0123456789abcdef.tmp", "half");
  // A link might lead to anybody's file.
  const fs::path link = folder.path() / "book.xlsx.aaaaaaaaaaaaaaaa.tmp";
  fs::create_symlink(folder.Put(u"other", "kept"), link);
  const int hold = open(held.c_str(), O_RDONLY | O_CLOEXEC);
  REQUIRE(flock(hold, LOCK_EX) == 0);
  WriteFile(folder.path() / "book.xlsx", "whole");
  CHECK(fs::exists(held));
  close(hold);
  WriteFile(folder.path() / "book.xlsx", "whole");
  CHECK_FALSE(fs::exists(held));
  CHECK(fs::is_symlink(link));
}

TEST_CASE("nothing can be written where the current folder is gone") {
  const fs::path before = fs::current_path();
  {
    const TemporaryFolder folder;
    fs::current_path(folder.path());
  }
  CHECK_THROWS_WITH_AS(WriteFile("book.xlsx", "whole"), "files cannot be written to this folder",
                       WorkbookError);
  fs::current_path(before);
}
