#include <doctest/doctest.h>

#include <atomic>
#include <thread>

#include "host/xlsx/file_io.h"
#include "host/xlsx/unfinished_file.h"
#include "support/book_builder.h"

TEST_CASE("programs that write to one target at once do not take each other for killed ones") {
  const zavhost_test::TemporaryFolder folder;
  const std::filesystem::path target = folder.path() / "book.xlsx";
  std::atomic<bool> done = false;
  std::thread other([&] {
    while (!done) zavhost::RemoveRemains(target);
  });
  int failures = 0;
  for (int i = 0; i < 1000; ++i) {
    try {
      zavhost::WriteFile(target, "whole");
    } catch (const zavhost::WorkbookError&) {
      ++failures;
    }
  }
  done = true;
  other.join();
  CHECK(failures == 0);
}
