// Which record of ranks a function shows: one under the key of its arguments, for its data sets.
#include "functions/rank_sum_records.h"

#include <doctest/doctest.h>

#include <array>
#include <memory>
#include <string>

#include "data/data_argument.h"
#include "platform/export.h"
#include "support/open_add_in.h"

namespace zavrel {
using OfTwo = XLOPER12*(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT OfTwo ZavrelMWTies, ZavrelMWTieCorrectionTerm, ZavrelMWRankSum1, ZavrelMWRankSum2,
    ZavrelWSRTies, ZavrelWSRPositive;
ZAV_EXPORT XLOPER12* ZavrelWSRPairNegative(const XLOPER12*, const XLOPER12*, const XLOPER12*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

std::shared_ptr<ExcelData> DataOf(const XLOPER12* argument) {
  return *ReadDataArgument(std::array{argument});
}

}  // namespace

TEST_CASE("functions over the same cells show the fields of one record") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, 3.0, 5.0, 5.0});
  add_in.excel.SetColumn(0, 1, {2.0, 4.0, 6.0, 8.0});
  const Reference x(Area(0, 3, 0, 0)), y(Area(0, 3, 1, 1));
  const Argument median(Cell(4.0)), other(Cell(-0.0));
  RankSumRecords& records = Session::Current()->Kept<RankSumRecords>();

  Number(*ZavrelMWTies(x, y));
  Number(*ZavrelMWRankSum1(x, y));
  CHECK(records.size() == 1);
  Number(*ZavrelMWRankSum1(y, x));
  Number(*ZavrelWSRPositive(x, median));
  Number(*ZavrelWSRPositive(x, other));
  Number(*ZavrelWSRPairNegative(x, y, median));
  CHECK(records.size() == 5);

  // A record that is put there is shown, so nothing is computed again.
  const auto data_x = DataOf(x), data_y = DataOf(y);
  const RankSumRecords::Serials both = {data_x->serial(), data_y->serial()};
  const RankSumRecord planted{101, 102, 103, 104};
  const std::string of_both = data_x->key() + "_" + data_y->key();
  records.Put("MW:" + of_both, both, planted);
  records.Put("WSR:" + data_x->key() + "_hypothesizedMedian=4010000000000000", {both[0], 0},
              planted);
  records.Put("WSR:" + of_both + "_hypothesizedMedian=8000000000000000", both, planted);
  CHECK(records.size() == 6);
  CHECK(Number(*ZavrelMWTies(x, y)) == 101);
  CHECK(Number(*ZavrelMWTieCorrectionTerm(x, y)) == 102);
  CHECK(Number(*ZavrelMWRankSum1(x, y)) == 103);
  CHECK(Number(*ZavrelMWRankSum2(x, y)) == 104);
  CHECK(Number(*ZavrelWSRTies(x, median)) == 101);
  CHECK(Number(*ZavrelWSRPositive(x, other)) == 10);
  CHECK(Number(*ZavrelWSRPairNegative(x, y, other)) == 103);

  // With another cell the record is that of other data.
  add_in.excel.Set(1, 0, 7.0);
  CHECK(Number(*ZavrelMWRankSum1(x, y)) == 17);  // 1, 7, 4.5 twice
  CHECK(Number(*ZavrelWSRTies(x, median)) == 2);
}

TEST_CASE("ranks are kept for their data sets alone, and go with the other caches") {
  const OpenAddIn add_in;
  Session& session = *Session::Current();
  RankSumRecords& records = session.Kept<RankSumRecords>();
  records.Put("MW:a_b", {3, 4}, {.ties = 1, .rank_sum_2 = 7});
  records.Put("MW:b_a", {4, 3}, {});
  session.KeepUpCaches(UpkeepMode::kAfterCall);
  REQUIRE(records.Find("MW:a_b", {3, 4}) != nullptr);
  CHECK(records.Find("MW:a_b", {3, 4})->rank_sum_2 == 7);
  CHECK(records.Find("MW:a_b", {3, 5}) == nullptr);
  CHECK(records.Find("MW:c_b", {3, 4}) == nullptr);
  records.Put("MW:a_b", {3, 5}, {.ties = 2});
  CHECK(records.Find("MW:a_b", {3, 4}) == nullptr);
  CHECK(records.Find("MW:a_b", {3, 5})->ties == 2);
  CHECK(records.size() == 2);
  session.KeepUpCaches(UpkeepMode::kClearAll);
  CHECK(records.size() == 0);
  for (std::uint64_t i = 0; i < RankSumRecords::kMost + 10; ++i) {
    records.Put(std::to_string(i), {i, 0}, {});
    CHECK((records.Find("3", {3, 0}) != nullptr) == (i >= 3));  // used again and again
  }
  CHECK(records.size() == RankSumRecords::kMost);
  CHECK(records.Find("10", {10, 0}) == nullptr);
  CHECK(records.Find("11", {11, 0}) != nullptr);
}

}  // namespace zavrel::tests
