// Reading allocates by the block, never by the cell.
#include <doctest/doctest.h>

#include <string>

#include "data/category_table.h"
#include "data/data_argument.h"
#include "data/excel_data_cache.h"
#include "platform/block_pool.h"
#include "platform/utf.h"
#include "support/counted_allocations.h"

namespace zavrel::tests {
namespace {

int CountAllocations(const XLOPER12* reference) {
  const auto argument = Counted([&] { return ReadDataArgument({&reference, 1}); });
  CHECK(argument.ok());
  return allocations;
}

}  // namespace

TEST_CASE("nothing is allocated per cell") {
  FakeExcel excel;
  constexpr std::int32_t kRows = 60000;
  for (std::int32_t row = 0; row < kRows; ++row) {
    if (row % 3 == 0) excel.Set(row, 0, 1.0 * row);
    if (row % 3 == 1) excel.Set(row, 0, u"a text of some length " + std::u16string(5, u'x'));
  }
  const Reference small(Area(0, 9, 0, 0));
  const Reference large(Area(0, kRows - 1, 0, 0));
  const Reference whole(WholeColumns(0, 0));
  // Beyond a handful, only what a growing block or a block of the host's takes.
  CHECK(CountAllocations(small) < 25);
  CHECK(CountAllocations(large) < 60);
  CHECK(CountAllocations(whole) < 150);
  // Again: the key, and what the calls into the host take.
  CHECK(CountAllocations(small) <= 6);
  CHECK(CountAllocations(large) <= 8);
  CHECK(CountAllocations(whole) <= 100);
}

TEST_CASE("categories allocate by the different text, not by the cell") {
  constexpr std::size_t kNames = 10'000;
  constexpr std::size_t kRounds = 100;  // a million cells
  std::vector<Cell> names(kNames);
  for (std::size_t i = 0; i < kNames; ++i)
    names[i] = u"A category " + Utf16FromUtf8(std::to_string(i));
  const Argument once(kNames, 1, names);
  CellColumns cells;
  for (std::size_t i = 0; i < kRounds; ++i)
    cells.Append({static_cast<const XLOPER12*>(once)->val.array.lparray, kNames});
  const auto table = Counted([&] { return CategoryTable::Of(cells); });
  REQUIRE(table->size() == kNames);
  CHECK(table->categories()[7].positions.size() == kRounds);
  CHECK(table->categories()[7].positions[99] == 990'007);
  CHECK(allocations < 8 * static_cast<int>(kNames));
}

TEST_CASE("a kept number takes at most 24 bytes before its data set is sorted") {
  FakeExcel excel;
  constexpr std::int32_t kRows = 40000;
  for (std::int32_t row = 0; row < kRows; ++row) {
    excel.Set(row, 0, 1.0 * row);
    if (row % 10 != 0) excel.Set(row, 1, 1.0 * row);
  }
  for (const std::int32_t column : {0, 1}) {
    const Reference range(Area(0, kRows - 1, column, column));
    const XLOPER12* const piece = range;
    const DataArgument argument = ReadDataArgument({&piece, 1});
    CHECK((*argument)->Numbers(MissingDataPolicy::kNumbersOnly).size() > 0);
    CHECK((*argument)->bytes() <= 24 * (*argument)->NumberCount());
  }
}

TEST_CASE("without memory to cache it a data set stays uncached") {
  ExcelDataCache cache;
  auto data = std::make_shared<ExcelData>("key", CellColumns());
  cache.Put(data);
  data = std::make_shared<ExcelData>("key", CellColumns());
  int failures = 0;
  for (; cache.Find("key") != data; ++failures) {
    REQUIRE(failures < 10);
    until_failure = failures;
    cache.Put(data);
    const bool failed = until_failure < 0;
    until_failure = -1;
    CHECK(failed == (cache.size() == 0));
    CHECK((cache.Find("key") == nullptr) == failed);
    cache.Prune();
  }
  CHECK(failures >= 2);
  CHECK(cache.size() == 1);
}

TEST_CASE("the shared values take no memory") {
  until_failure = 0;
  const XXloper values[] = {XXloper(), XXloper::Nil(), XXloper::Boolean(true),
                            XXloper::Error(ExcelError::kSpill), XXloper::ErrorByCode(xlerrNA)};
  const bool none = until_failure == 0;
  until_failure = -1;
  CHECK(none);
  CHECK(values[3].record().val.err == xlerrSpill);
}

TEST_CASE("large blocks are used again, within a limit") {
  ReleaseKeptBlocks();
  const void* block = nullptr;
  {
    BlockArray<double> numbers;
    numbers.Reserve(100000);
    block = numbers.data();
  }
  {
    BlockArray<double> numbers;
    numbers.Extend(90000);
    CHECK(numbers.data() == block);
    CHECK(ReleaseKeptBlocks() == 0);
    BlockArray<char> small;  // not out of the large one
    small.Reserve(100);
    BlockArray<double> copy = std::move(numbers);
    CHECK(copy.size() == 90000);
    CHECK(numbers.size() == 0);  // NOLINT(bugprone-use-after-move): empty by contract
  }
  {
    std::vector<BlockArray<char>> many(100);
    for (BlockArray<char>& array : many) array.Reserve(std::size_t{1} << 20);
  }
  const std::size_t kept = ReleaseKeptBlocks();
  CHECK(kept >= std::size_t{1} << 20);
  CHECK(kept <= std::size_t{64} << 20);
  CHECK(ReleaseKeptBlocks() == 0);
}

}  // namespace zavrel::tests
