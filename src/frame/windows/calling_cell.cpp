#include "frame/calling_cell.h"

#include "platform/windows/ole_owners.h"

namespace zavrel {

std::optional<std::u16string> CallingCellFormula(void* excel_application) noexcept {
  try {
    auto* application = static_cast<IDispatch*>(excel_application);
    const auto caller = AutomationProperty(application, L"Caller");
    const auto formula = AutomationProperty(ObjectIn(caller), L"Formula");
    // A range of several cells gives an array of formulas, not a text.
    if (!formula || formula->get().vt != VT_BSTR) return std::nullopt;
    return std::u16string(BstrView(formula->get().bstrVal));
  } catch (...) {
    return std::nullopt;
  }
}

}  // namespace zavrel
