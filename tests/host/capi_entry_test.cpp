// What a function may do while the host runs it, and what becomes of what it returns.
#include <doctest/doctest.h>

#include <array>
#include <filesystem>

#include "host/capi/add_in_function.h"
#include "host/capi/excel_api.h"
#include "platform/module.h"
#include "support/records.h"

namespace zavhost::tests {
namespace {

/// A workbook of which only A1 is calculated.
class Cells : public HostCells {
 public:
  Cells() { book_.sheets.emplace_back(u"Sheet1").Set(0, 0, 5.0); }
  Workbook& cells_workbook() override { return book_; }
  bool MeetsUncalculated(std::uint32_t, const CellRange& range) override {
    return range != CellRange{};
  }
  std::optional<CallingCells> calling_cells() const override { return CallingCells{}; }

 private:
  Workbook book_;
};

/// A library that is no add-in and exports nothing that the host calls.
class Host {
 public:
  Host() : module_(zavrel::Module::Load(kFile)), add_in_{&module_.value(), kFile} {}

  const LoadedAddIn& add_in() const { return add_in_; }

  Cells cells;
  Judge judge;
  ExcelApi api{cells, judge, {}};

 private:
  inline static const std::filesystem::path kFile = std::filesystem::absolute(EUTILITY_FILE);
  std::optional<zavrel::Module> module_;
  LoadedAddIn add_in_;
};

XLOPER12* ForTheAddInToFree() {
  static XLOPER12 value{.val = {.num = 3}, .xltype = xltypeNum | xlbitDLLFree};
  return &value;
}

}  // namespace

TEST_CASE("once told that a cell is not calculated, a function may only ask for cells and free") {
  Host host;
  const ExcelApi::Entry entry(host.api, CallContext::kWorksheetFunction, host.add_in());
  const auto call = [&](int function, const XLOPER12* argument) {
    XLOPER12 answer{};
    std::array records{const_cast<XLOPER12*>(argument)};
    host.api.Call(xlEnableXLMsgs, 0, nullptr, nullptr);
    const int code = host.api.Call(function, argument == nullptr ? 0 : 1, records.data(), &answer);
    host.api.Call(xlDisableXLMsgs, 0, nullptr, nullptr);
    return code;
  };
  const zavrel::tests::Reference first(zavrel::tests::Area(0, 0, 0, 0));
  const zavrel::tests::Reference second(zavrel::tests::Area(1, 1, 0, 0));
  CHECK(call(xlCoerce, first) == xlretSuccess);
  CHECK(call(xlfCaller, nullptr) == xlretSuccess);
  CHECK(call(xlfCounta, first) == xlretSuccess);
  CHECK(call(xlCoerce, second) == xlretUncalced);
  CHECK(call(xlfCounta, second) == xlretUncalced);
  for (const int function : {xlfCaller, xlSheetId, xlAbort})
    CHECK(call(function, nullptr) == xlretUncalced);
  CHECK(call(xlCoerce, first) == xlretSuccess);
  CHECK(call(xlFree, first) == xlretSuccess);
  CHECK(host.api.met_uncalculated());
}

TEST_CASE("a value for the add-in to free is read, and the lack of xlAutoFree12 found out") {
  Host host;
  ArgumentBlock block;
  RegistryEntry entry;
  entry.type = std::get<TypeText>(ParseTypeText(u"Q"));
  entry.address = reinterpret_cast<void*>(&ForTheAddInToFree);
  entry.add_in = &host.add_in();
  CHECK(AddInFunction(host.api, block, entry).Call({}) == Operand(Value(3.0)));
  REQUIRE(host.judge.count() == 1);
  CHECK(host.judge.violations()[0].detail.find("xlAutoFree12 is missing") != std::string::npos);
}

}  // namespace zavhost::tests
