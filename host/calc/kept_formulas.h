#pragma once
// Formulas that keep their stored value although they read a recalculated cell.

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/calc/formula_index.h"
#include "host/formula/evaluate.h"
#include "host/workbook/workbook.h"

namespace zavhost {

class KeptFormulas {
 public:
  explicit KeptFormulas(const Workbook& workbook) : workbook_(workbook) {}

  void Add(const FormulaCell& formula) { formulas_.push_back(&formula); }
  /// Warns of formulas that depend on a formula in `recalculated`, directly or through other kept
  /// formulas: names up to `limit` of them, then gives a count.
  void Warn(const FormulaIndex& recalculated, std::size_t limit,
            std::vector<std::string>& warnings);

 private:
  enum class Depends : std::uint8_t { kUnknown, kOpen, kNo, kYes };
  struct Open {
    std::uint32_t formula;
    std::vector<std::uint32_t> reads;  // kept formulas
    std::size_t next = 0;
  };

  bool Decide(std::uint32_t formula, const FormulaIndex& recalculated);
  Open Look(std::uint32_t formula, const FormulaIndex& recalculated);

  const Workbook& workbook_;
  std::vector<const FormulaCell*> formulas_;
  std::vector<Depends> depends_;
  FormulaIndex index_;
  std::unordered_map<std::uint32_t, FormulaPtr> shared_texts_;
  std::size_t steps_left_ = 0;
};

}  // namespace zavhost
