#include "frame/calling_cell.h"

#include "msexcel/windows/application.h"
#include "msexcel/windows/range.h"

namespace zavrel {

std::optional<std::u16string> CallingCellFormula(void* excel_application) noexcept {
  try {
    const MsExcel::Application application{
        MsExcel::Object(static_cast<IDispatch*>(excel_application))};
    const auto caller = application.Caller();
    return caller ? std::optional(caller->Formula()) : std::nullopt;
  } catch (...) {
    return std::nullopt;
  }
}

}  // namespace zavrel
