#pragma once
// The add-in as Calc's functions see it: loaded, opened and announced once, then called by name.

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/capi/add_in_function.h"
#include "host/capi/excel_api.h"
#include "platform/module.h"

namespace zavcalc {

class AddIn : private zavhost::HostCells {
 public:
  /// Loads the add-in in the folder of this component.
  AddIn();

  /// Calls a function by its name in formulas. #NAME? if the add-in has not registered it, or could
  /// not be loaded.
  zavhost::Operand Call(std::u16string_view name, std::span<const zavhost::Operand> arguments);

 private:
  // Calc does not tell who calls, and no argument is a reference: one sheet without cells.
  zavhost::Workbook& cells_workbook() override { return workbook_; }
  bool MeetsUncalculated(std::uint32_t, const zavhost::CellRange&) override { return false; }
  std::optional<zavhost::CallingCells> calling_cells() const override { return calling_; }

  void Load(const std::filesystem::path& file);
  std::int32_t CallExport(const char* name, const zavhost::MachineArguments& arguments);
  zavhost::AddInFunction* Find(std::u16string_view name);

  std::mutex mutex_;
  zavhost::Workbook workbook_;
  std::optional<zavhost::CallingCells> calling_;
  zavhost::Judge judge_;
  zavhost::ExcelApi api_;
  zavhost::ArgumentBlock block_;
  std::optional<zavrel::Module> module_;
  zavhost::LoadedAddIn loaded_;
  std::unordered_map<std::u16string, zavhost::AddInFunction> functions_;
};

}  // namespace zavcalc
