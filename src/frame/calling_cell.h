#pragma once

#include <optional>
#include <string>

namespace zavrel {

/// The formula of the cell that is being calculated, from Excel's automation object by late
/// binding: Application.Caller.Formula. Nothing when there is no object, no single cell or any
/// failure.
std::optional<std::u16string> CallingCellFormula(void* excel_application) noexcept;

}  // namespace zavrel
