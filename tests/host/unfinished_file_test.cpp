#include "host/xlsx/unfinished_file.h"

#include <doctest/doctest.h>

#include <array>
#include <fstream>
#include <optional>
#include <string>

#include "host/workbook/workbook.h"
#include "host/xlsx/file_io.h"
#include "support/book_builder.h"

using namespace zavhost;
using namespace zavhost_test;
namespace fs = std::filesystem;

TEST_CASE("a program that is ended deletes what it has not finished, up to four files") {
  const TemporaryFolder folder;
  std::array<std::optional<UnfinishedFile>, 5> files;
  for (std::size_t i = 0; i < files.size(); ++i) {
    std::ofstream(files[i].emplace(folder.path() / std::to_string(i)).path()) << "half";
  }
  // One is finished, and one is given up, which makes room for another.
  files[0]->MoveTo(folder.path() / "book.xlsx");
  files[1].reset();
  std::ofstream(files[1].emplace(folder.path() / "other").path()) << "half";
  DeleteUnfinishedFiles();
  CHECK(fs::exists(folder.path() / "book.xlsx"));
  for (const std::size_t i : {std::size_t{1}, std::size_t{2}, std::size_t{3}})
    CHECK_FALSE(fs::exists(files[i]->path()));
  CHECK(fs::exists(files[4]->path()));
}

TEST_CASE("a file that cannot take its place is deleted, and one line says so") {
  const TemporaryFolder folder;
  fs::path path;
  {
    UnfinishedFile file(folder.path() / "book.xlsx");
    path = file.path();
    std::ofstream(path) << "whole";
    CHECK_THROWS_WITH_AS(file.MoveTo(folder.path()), doctest::Contains("cannot be replaced"),
                         WorkbookError);
    CHECK(fs::exists(path));
  }
  CHECK_FALSE(fs::exists(path));
  // Too long a name for any file is a failure as every other.
  CHECK_THROWS_AS(WriteFile(folder.path() / std::string(50'000, 'x'), "whole"), WorkbookError);
}

TEST_CASE("what a killed program left beside a target is deleted, and nothing that looks alike") {
  const TemporaryFolder folder;
  const std::u16string left[] = {u"book.xlsx.0123456789abcdef.tmp",
                                 u"book.xlsx.aaaaaaaaaaaaaaaa.tmp"};
  const std::u16string alike[] = {
      u"book.xlsx.0123456789abcdeg.tmp", u"book.xlsx_0123456789abcdef.tmp",
      u"cook.xlsx.0123456789abcdef.tmp", u"book.xlsx.0123456789abcdef.bak", u"book.xlsx.tmp"};
  for (const std::u16string& name : left) folder.Put(name, "half");
  for (const std::u16string& name : alike) folder.Put(name, "kept");
  fs::create_directory(folder.path() / "book.xlsx.bbbbbbbbbbbbbbbb.tmp");
  WriteFile(folder.path() / "book.xlsx", "whole");
  for (const std::u16string& name : left) CHECK_FALSE(fs::exists(folder.path() / name));
  for (const std::u16string& name : alike) CHECK(fs::exists(folder.path() / name));
  CHECK(fs::exists(folder.path() / "book.xlsx.bbbbbbbbbbbbbbbb.tmp"));
}
