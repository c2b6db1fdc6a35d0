#include "host/cli/doctor_excel.h"

namespace zavhost {

void CheckExcel(const std::filesystem::path&, Findings& findings) {
  findings.Note("Macro entry points",
                "not in this library: they need OLE automation, which only Windows has");
}

}  // namespace zavhost
