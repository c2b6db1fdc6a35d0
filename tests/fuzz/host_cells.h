#pragma once
// The host's side of calls from an add-in, for targets of the C API: a small workbook, and an
// add-in with the few exports that the host calls itself.

#include "host/capi/excel_api.h"
#include "host/capi/host_cells.h"
#include "platform/module.h"

namespace zavrel::tests {

class SmallCells : public zavhost::HostCells {
 public:
  SmallCells() {
    zavhost::Sheet& data = book_.sheets.emplace_back(u"Data");
    data.Set(0, 0, 1.5);
    data.Set(1, 0, u"2.5");
    data.Set(2, 0, true);
    data.Set(3, 0, zavhost::ErrorCode::kNA);
    data.Set(1, 1, u"a text");
    book_.sheets.emplace_back(u"Other").Set(0, 0, 7.0);
    book_.sheets.emplace_back(u"Chart").set_has_cells(false);
  }

  zavhost::Workbook& cells_workbook() override { return book_; }
  bool MeetsUncalculated(std::uint32_t sheet, const zavhost::CellRange& range) override {
    return has_uncalculated && sheet == 0 && range.Contains(5, 0);
  }
  std::optional<zavhost::CallingCells> calling_cells() const override {
    if (!is_calculating) return std::nullopt;
    return zavhost::CallingCells{0, {8, 4, 9, 4}};
  }

  bool has_uncalculated = false;
  bool is_calculating = true;

 private:
  zavhost::Workbook book_;
};

inline const zavhost::LoadedAddIn& FuzzedAddIn() {
  static const std::filesystem::path file = std::filesystem::absolute(FUZZED_ADD_IN);
  static const std::optional<Module> module = Module::Load(file);
  static const zavhost::LoadedAddIn add_in{&module.value(), file};
  return add_in;
}

}  // namespace zavrel::tests
