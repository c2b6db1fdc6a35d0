#include "frame/add_in.h"

#include "distribution_functions/function_tables.h"

namespace zavrel {

AddIn ThisAddIn() {
  static constexpr HelpFileInFolder kHelpFiles[] = {{9, u"ZavrelFuncs8_x64.chm"},
                                                    {7, u"help/de/ZavrelFuncs8_x64.de.chm"}};
  static const FunctionTable tables[] = {{.rows = MainTable()}};
  return {.name = u"ZavrelDistributions",
          .title = u"Zavrel Distributions",
          .help_files = kHelpFiles,
          .tables = tables};
}

}  // namespace zavrel
