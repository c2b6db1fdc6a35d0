#pragma once
// What formulas use, directly or through defined names: the add-in, and what the host does not
// compute.

#include <string>
#include <unordered_map>
#include <vector>

#include "host/capi/function_registry.h"
#include "host/workbook/workbook.h"

namespace zavhost {

struct FormulaUse {
  bool uses_add_in = false;
  /// Calls a function whose value depends on the time or on chance.
  bool is_volatile = false;
  /// Something that the host does not compute, as written: a function, a reference to another
  /// workbook or through several sheets. Empty if there is none.
  std::u16string foreign;
};

class FormulaUses {
 public:
  /// Both must outlive this object. Examines the defined names at once, and formula texts on
  /// request.
  FormulaUses(const Workbook& workbook, const FunctionRegistry& registry);

  /// Of a text of the workbook.
  const FormulaUse& Of(std::uint32_t text);
  /// Of any other text, without its leading "=".
  FormulaUse OfText(std::u16string_view text) const;

 private:
  struct NameUse {
    FormulaUse use;
    std::vector<std::u16string> users;  // names whose texts mention this one
  };

  FormulaUse Look(std::u16string_view text, std::vector<std::u16string>& names) const;
  void LookAtFunction(std::u16string_view token, FormulaUse& use) const;
  void LookAtNames();

  const Workbook& workbook_;
  const FunctionRegistry& registry_;
  /// By name in lower case. A name that several sheets define counts as all of them together.
  std::unordered_map<std::u16string, NameUse> names_;
  std::vector<FormulaUse> uses_;
  std::vector<bool> known_;
};

}  // namespace zavhost
