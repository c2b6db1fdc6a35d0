#include "frame/add_in.h"

#include "bindings/nonparametric_library.h"
#include "functions/function_tables.h"

namespace zavrel {

AddIn ThisAddIn() {
  static const FunctionTable tables[] = {
      {.rows = MainTable()},
      {.rows = ExtensionTable(), .is_available = &ExtensionIsPresent},
  };
  return {.name = u"ZavrelFuncs", .title = u"Zavrel Functions", .tables = tables};
}

}  // namespace zavrel
