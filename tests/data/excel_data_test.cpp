#include "data/excel_data.h"

#include <doctest/doctest.h>

#include <memory>
#include <vector>

#include "data/dataset_parm.h"
#include "numbers/error_double.h"
#include "platform/utf.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

using enum MissingDataPolicy;

std::shared_ptr<ExcelData> DataOf(const std::vector<Cell>& contents, const std::string& key = "k") {
  const Argument array(static_cast<std::int32_t>(contents.size()), 1, contents);
  CellColumns cells;
  cells.Append(ElementsIn(*static_cast<const XLOPER12*>(array)));
  return std::make_shared<ExcelData>(key, std::move(cells));
}

std::shared_ptr<ExcelData> Omitted() {
  XLOPER12 missing{};
  missing.xltype = xltypeMissing;
  CellColumns cells;
  cells.Append({&missing, 1});
  return std::make_shared<ExcelData>("-", std::move(cells));
}

/// 0 when accepted, else the error's code.
std::int32_t Refused(const std::vector<Cell>& contents, MissingDataPolicy policy,
                     bool propagate_errors = false) {
  const auto data = DataOf(contents);
  const XXloper& result = data->Acceptance(policy, propagate_errors);
  CHECK(&data->Acceptance(policy, propagate_errors) == &result);  // checked once
  return result.type() == xltypeNil ? 0 : result.record().val.err;
}

std::vector<double> Shape(const std::vector<Cell>& contents, MissingDataPolicy policy) {
  const auto data = DataOf(contents);
  const auto numbers = data->Numbers(policy);
  CHECK(data->Numbers(policy).data() == numbers.data());  // made once
  return {numbers.begin(), numbers.end()};
}

}  // namespace

TEST_CASE("classes of cells") {
  // A text is a text, whatever it says; an omitted value is as blank as an empty cell.
  CHECK(DataOf({u"12"})->CountOfClass(CellClass::kNumber) == 0);
  CHECK(Omitted()->CountOfClass(CellClass::kBlank) == 1);
  CHECK_FALSE(BelongsTo(CellTag::kInteger, CellClass::kNumber));
  CHECK(BelongsTo(CellTag::kInteger, CellClass::kNonBlankNonNumber));
}

TEST_CASE("the running sum of the cells is that of their numbers, unless it is not known") {
  std::vector<Cell> contents;
  for (int i = 0; i < 100; ++i) {
    if (i % 23 == 7) contents.push_back(i % 2 == 0 ? Cell(u"7") : Cell());
    contents.emplace_back(i % 3 == 0 ? -0.1 * i : 1e3 / (i + 1));
  }
  const auto data = DataOf(contents);
  RunningSum expected;
  for (const double number : data->Numbers(kNumbersOnly)) expected.Add(number);
  const RunningSum* known = data->cells().running_sum();
  REQUIRE(known != nullptr);
  CHECK((known->sum == expected.sum && known->minimum == expected.minimum &&
         known->maximum == expected.maximum));
  CellColumns part;
  part.AppendFirst(data->cells(), 3);
  CHECK(part.running_sum() == nullptr);
}

TEST_CASE("what each policy accepts") {
  const Cell blank;
  const std::vector<Cell> mixed{3.0, blank, u"x", ErrorCell{7}, 5.0};
  CHECK(Refused({1.0, 2.0}, kNumbersRequired) == 0);
  CHECK(Refused({1.0, blank}, kNumbersRequired) == xlerrValue);
  CHECK(Refused({1.0, u"2"}, kNumbersRequired) == xlerrValue);
  for (const auto policy : {kPositional, kNumbersOnly, kPositionalWithErrors})
    CHECK(Refused(mixed, policy) == 0);

  CHECK(Refused({blank, 1.0, 2.0, u"t", blank}, kOneRun) == 0);
  CHECK(Refused({blank, blank}, kOneRun) == 0);
  CHECK(Refused({1.0, u"t"}, kOneRun) == 0);
  CHECK(Refused({u"t", 1.0, 2.0}, kOneRun) == xlerrValue);
  CHECK(Refused({1.0, blank, 2.0}, kOneRun) == xlerrValue);
  CHECK(Refused({1.0, 2.0, u"t", u"t"}, kOneRun) == xlerrValue);
  CHECK(Refused({1.0, blank, u"t"}, kOneRun) == xlerrValue);

  // The first error wins over everything, and each way is remembered apart.
  for (const auto policy :
       {kNumbersRequired, kPositional, kOneRun, kNumbersOnly, kPositionalWithErrors}) {
    CHECK(Refused({u"x", ErrorCell{xlerrDiv0}, ErrorCell{xlerrNA}}, policy, true) == xlerrDiv0);
    CHECK(Refused({1.0, ErrorCell{0}}, policy, true) == 0x0);
  }
  CHECK(Refused(mixed, kNumbersRequired, true) == xlerrDiv0);
  CHECK(Refused(mixed, kNumbersRequired, false) == xlerrValue);
}

TEST_CASE("the numbers in each policy's shape") {
  const std::vector<Cell> cells{3.0, Cell(), u"x", 5.0};
  using Numbers = std::vector<double>;
  for (const auto policy : {kNumbersRequired, kOneRun, kNumbersOnly})
    CHECK(Shape(cells, policy) == Numbers{3, 5});
  CHECK(Shape(cells, kPositional) == Numbers{3, 1.01e300, 1.01e300, 5});

  const Numbers coded =
      Shape({3.0, ErrorCell{xlerrDiv0}, true, ErrorCell{xlerrSpill}}, kPositionalWithErrors);
  CHECK(coded[0] == 3);
  CHECK(ErrorCodeOf(coded[1]) == xlerrDiv0);
  CHECK(coded[2] == kMissingValue);
  CHECK(ErrorCodeOf(coded[3]) == xlerrSpill);

  for (const auto policy :
       {kNumbersRequired, kPositional, kOneRun, kNumbersOnly, kPositionalWithErrors}) {
    CHECK(Shape({1.0, 2.0}, policy) == Numbers{1, 2});
    CHECK(Shape({}, policy).empty());
    CHECK(Omitted()->Numbers(policy).empty());
  }
}

TEST_CASE("the numbers in ascending order, made once") {
  const auto sorted = [](const std::shared_ptr<ExcelData>& data) {
    const auto numbers = data->SortedNumbers();
    CHECK(data->SortedNumbers().data() == numbers.data());
    return std::vector<double>(numbers.begin(), numbers.end());
  };
  using Numbers = std::vector<double>;
  CHECK(sorted(DataOf({3.0, Cell(), -1.0, u"x", true, ErrorCell{7}, 2.0, -1.0})) ==
        Numbers{-1, -1, 2, 3});
  CHECK(sorted(DataOf({u"x", Cell()})).empty());
  CHECK(sorted(DataOf({})).empty());
  CHECK(sorted(Omitted()).empty());

  std::vector<Cell> cells;
  cells.reserve(5000);
  for (int i = 0; i < 5000; ++i) cells.emplace_back(static_cast<double>(i * 37 % 5000));
  const auto data = DataOf(cells);
  const std::size_t bytes = data->bytes();
  const Numbers ascending = sorted(data);
  for (std::size_t i = 0; i < 5000; ++i) CHECK(ascending[i] == static_cast<double>(i));
  CHECK(data->bytes() >= bytes + 5000 * sizeof(double));
  CHECK(data->Numbers(kNumbersOnly)[1] == 37);  // the cells keep their own order
}

TEST_CASE("the cache is bounded, and pruning spares what is held") {
  ExcelDataCache cache({.entries = 4, .bytes = 1 << 20}, {.entries = 2, .bytes = 1 << 20});
  const auto put = [&](const char* key) { cache.Put(DataOf({1.0}, key)); };
  for (const char* key : {"a", "b", "c", "d"}) put(key);
  CHECK(cache.Find("a") != nullptr);  // and is the latest used now
  put("e");
  CHECK(cache.size() == 4);
  CHECK(cache.Find("b") == nullptr);

  const auto held = cache.Find("c");
  for (const char* key : {"d", "e", "a"}) CHECK(cache.Find(key) != nullptr);
  cache.Prune();  // c is the oldest
  CHECK(cache.size() == 2);
  CHECK(cache.Find("c") == held);
  CHECK(cache.Find("a") != nullptr);

  const auto replacement = DataOf({2.0}, "c");
  cache.Put(replacement);
  CHECK(cache.size() == 2);
  CHECK(cache.Find("c") == replacement);
  CHECK((*held)[0].number == 1);

  cache.Put(DataOf(std::vector<Cell>(200000, 1.0), "large"));  // alone beyond the limit: kept alone
  CHECK(cache.size() == 1);
  CHECK(cache.bytes() > 1 << 20);
  cache.Prune();
  CHECK(cache.size() == 0);
  CHECK(cache.bytes() == 0);
  put("a");
  cache.Clear();
  CHECK(cache.size() == 0);
  CHECK(cache.Find("a") == nullptr);
}

TEST_CASE("the cache counts what was worked out from the latest data sets") {
  const FakeExcel excel;
  ExcelDataCache cache;
  std::vector<Cell> cells(5000);
  for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = Utf16FromUtf8(std::to_string(i));
  const auto data = DataOf(cells);
  cache.Put(data);
  const std::size_t before = cache.bytes();
  CHECK((*data->Categories())->size() == 5000);
  CHECK(cache.bytes() == before);
  cache.Put(DataOf({1.0}, "other"));
  CHECK(cache.bytes() >= before + std::size_t{5000} * 80);
}

TEST_CASE("the latest parameters are shared and hold their data sets") {
  DatasetParmCache cache;
  const auto data = DataOf({1.0});
  const auto parm = cache.Get(data, kNumbersOnly, false);
  CHECK(cache.Get(data, kNumbersOnly, false) == parm);
  CHECK(cache.Get(data, kNumbersOnly, true) != parm);
  CHECK(cache.Get(data, kPositional, false) != parm);
  CHECK(cache.Get(DataOf({1.0}), kNumbersOnly, false) != parm);
  CHECK(cache.size() == 4);
  cache.Prune();
  CHECK(cache.size() == 4);
  cache.Forget(data.get());
  CHECK(cache.size() == 1);
  for (std::size_t i = 0; i < 2 * DatasetParmCache::kEntries; ++i)
    cache.Get(DataOf({1.0}), kNumbersOnly, false);
  CHECK(cache.size() == DatasetParmCache::kEntries);
  cache.Clear();
  CHECK(cache.size() == 0);
}

TEST_CASE("pruning lets go of the parameters that hold too much, except the latest") {
  const auto large = [] { return DataOf(std::vector<Cell>(5000, 1.0)); };
  DatasetParmCache cache(2 * large()->bytes());
  const auto get = [&](const std::shared_ptr<ExcelData>& data) {
    return cache.Get(data, kNumbersOnly, false);
  };
  const auto oldest = large();
  const auto next = large();
  const std::weak_ptr<const DatasetParm> dropped = get(oldest);
  const auto kept = get(next);
  get(large());
  cache.Prune();
  CHECK(cache.size() == 2);
  CHECK(dropped.expired());
  CHECK(get(next) == kept);
  get(DataOf(std::vector<Cell>(50'000, 1.0)));
  cache.Prune();
  CHECK(cache.size() == 1);
}

}  // namespace zavrel::tests
