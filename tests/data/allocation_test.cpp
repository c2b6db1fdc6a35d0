// What is kept of cells, and the blocks that it is kept in.
#include <doctest/doctest.h>

#include "data/data_argument.h"
#include "data/excel_data_cache.h"
#include "platform/block_pool.h"
#include "support/counted_allocations.h"

namespace zavrel::tests {
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
    const BlockArray<double> copy = std::move(numbers);
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
