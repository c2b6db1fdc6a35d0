// Automation exists only on Windows.
#include "frame/calling_cell.h"

namespace zavrel {

std::optional<std::u16string> CallingCellFormula(void*) noexcept { return std::nullopt; }

}  // namespace zavrel
