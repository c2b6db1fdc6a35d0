#include "frame/add_in.h"

#include "distribution_functions/function_tables.h"

namespace zavrel {

AddIn ThisAddIn() {
  static const FunctionTable tables[] = {{.rows = MainTable()}};
  return {.name = u"ZavrelDistributions", .title = u"Zavrel Distributions", .tables = tables};
}

}  // namespace zavrel
