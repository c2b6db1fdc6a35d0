#pragma once

#include <optional>
#include <string>

namespace zavrel {

/// The formula of the cell being calculated, from Excel's automation object by late binding:
/// Application.Caller.Formula. std::nullopt without an object or a single cell, and after any
/// failure.
std::optional<std::u16string> CallingCellFormula(void* excel_application) noexcept;

}  // namespace zavrel
