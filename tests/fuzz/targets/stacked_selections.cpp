// Handles of selections: the same arguments have the same handle, a handle that is read gives the
// rows of its category or a failure, however selections are nested, and the budget holds.
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "data/data_argument.h"
#include "data/stacked_data.h"
#include "fuzz/hostile_values.h"
#include "fuzz/target.h"
#include "platform/utf.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

constexpr std::int32_t kRows = 8;
constexpr std::int32_t kHandleColumn = 5;

class Selecting {
 public:
  explicit Selecting(Bytes& bytes) : bytes_(bytes), hostile_(bytes, memory_) {
    excel_.texts_of_numbers = {{1, u"1"}, {2, u"2"}};
    for (std::int32_t column = 0; column < 3; ++column)
      for (std::int32_t row = 0; row < kRows; ++row) excel_.Set(row, column, AnyCell());
  }

  void Run() {
    for (int i = 0; i < 40 && !bytes_.empty(); ++i) {
      switch (bytes_.Below(6)) {
        case 0:
        case 1:
          Select();
          break;
        case 2:
          excel_.Set(static_cast<std::int32_t>(bytes_.Below(kRows)),
                     static_cast<std::int32_t>(bytes_.Below(3)), AnyCell());
          break;
        case 3:
          ReadText(Utf16FromUtf8(bytes_.Text(14)));
          break;
        default:
          ReadText(AnyHandle());
      }
    }
  }

 private:
  StackedSelections& selections() { return SessionExcelDataCache()->stacked_selections(); }

  Cell AnyCell() {
    switch (bytes_.Below(7)) {
      case 0:
        return {};
      case 1:
        return 1.0;
      case 2:
        return u"b";
      case 3:
        return AnyHandle();
      case 4:
        return ErrorCell{xlerrNA};
      default:
        return 2.0;
    }
  }

  std::u16string AnyHandle() {
    if (handles_.empty() || bytes_.Below(8) == 0)
      return Utf16FromUtf8(StackedHandle(bytes_.Take<std::uint32_t>() % 1'000'000'000));
    return std::next(handles_.begin(), static_cast<std::ptrdiff_t>(bytes_.Below(handles_.size())))
        ->first;
  }

  /// A column, a cell, or anything.
  XLOPER12 AnyArgument() {
    if (bytes_.Below(4) == 0) return hostile_.Any();
    XLOPER12 record{};
    record.xltype = xltypeSRef;
    const auto column = static_cast<std::int32_t>(bytes_.Below(4));
    record.val.sref = {1, Area(0, bytes_.Below(4) == 0 ? 3 : kRows - 1, column, column)};
    return record;
  }

  std::optional<KeptArgument> Keep() {
    try {
      return KeptArgument::Of(AnyArgument());
    } catch (const std::invalid_argument&) {
      return std::nullopt;  // the functions' frame makes an error of it
    }
  }

  void Select() {
    static constexpr const char16_t* kNames[] = {u"1", u"b", u"2", u"", u"B "};
    auto values = Keep();
    auto first = Keep();
    if (!values || !first) return;
    StackedSelection selection{
        *std::move(values), {*std::move(first), kNames[bytes_.Below(5)]}, {}};
    if (bytes_.Below(2) == 0) {
      auto second = Keep();
      if (!second) return;
      selection.second.emplace(
          StackedSelection::Condition{*std::move(second), kNames[bytes_.Below(5)]});
    }
    std::string description;
    selection.ForEachArgument([&](const KeptArgument& kept) { kept.AddDescription(description); });
    description += '|' + Utf8FromUtf16(selection.first.name);
    if (selection.second) description += '|' + Utf8FromUtf16(selection.second->name);

    const std::size_t index = selections().IndexOf(std::move(selection));
    Require(index % StackedSelections::kArguments == 0 && selections().Find(index) != nullptr,
            "a selection is not where it should be");
    const std::u16string handle = Utf16FromUtf8(StackedHandle(index));
    Require(StackedHandleIndex(handle) == index, "a handle names another selection");
    const auto [known, is_new] = handles_.try_emplace(handle, description);
    Require(is_new || known->second == description, "two selections have one handle");
    excel_.Set(static_cast<std::int32_t>(bytes_.Below(kRows)), kHandleColumn, Cell(handle));
  }

  void ReadText(const std::u16string& text) {
    const Argument argument{Cell(text)};
    const XLOPER12* const record = argument;
    const auto read = [&] { return ReadDataArgument(std::span(&record, 1), 100'000); };
    const DataArgument first = read();
    const DataArgument second = read();
    Require(first.ok() == second.ok(), "a handle can be read only sometimes");
    if (first.ok()) Require((*first)->size() == (*second)->size(), "a handle gives other cells");
  }

  Bytes& bytes_;
  ValueMemory memory_;
  HostileValues hostile_;
  FakeExcel excel_;
  std::map<std::u16string, std::string> handles_;
};

void Select(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  Selecting(bytes).Run();
}

const FuzzTarget target("stacked_selections", Select);

}  // namespace
}  // namespace zavrel::tests
