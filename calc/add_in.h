#pragma once
// The add-in as Calc's functions see it: loaded, opened and announced once, then called by name.

#include <cstdint>
#include <filesystem>
#include <list>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "calc/call_sites.h"
#include "host/capi/add_in_function.h"
#include "host/capi/excel_api.h"
#include "platform/module.h"

namespace zavcalc {

class AddIn : private zavhost::HostCells {
 public:
  /// Loads the add-ins in the folder of this component.
  AddIn();

  /// Whether the function fills the range of its formula, from one row to the next.
  static bool FillsRange(std::u16string_view name);

  /// Calls a function by its name in formulas. `filled` is the range that its array formula fills,
  /// if that is known. #NAME? if the add-in has not registered it, or could not be loaded.
  zavhost::Operand Call(std::u16string_view name, std::span<const zavhost::Operand> arguments,
                        const std::optional<FilledShape>& filled);

 private:
  // Calc does not tell who calls, and no argument is a reference: one sheet without cells.
  zavhost::Workbook& cells_workbook() override { return workbook_; }
  bool MeetsUncalculated(std::uint32_t, const zavhost::CellRange&) override { return false; }
  std::optional<zavhost::CallingCells> calling_cells() const override { return calling_; }

  struct Opened {
    zavrel::Module module;
    zavhost::LoadedAddIn loaded;
  };

  void Load(const std::filesystem::path& file);
  std::int32_t CallExport(const Opened& add_in, const char* name,
                          const zavhost::MachineArguments& arguments);
  zavhost::AddInFunction* Find(std::u16string_view name);

  std::mutex mutex_;
  zavhost::Workbook workbook_;
  std::optional<zavhost::CallingCells> calling_;
  zavhost::Judge judge_;
  zavhost::ExcelApi api_;
  zavhost::ArgumentBlock block_;
  std::list<Opened> opened_;
  std::unordered_map<std::u16string, zavhost::AddInFunction> functions_;
};

}  // namespace zavcalc
