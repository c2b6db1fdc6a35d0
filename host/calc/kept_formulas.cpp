#include "host/calc/kept_formulas.h"

#include <fmt/format.h>

#include "host/calc/formula_text.h"

namespace zavhost {
namespace {

// The number of formulas and cells that are examined at most. The search serves only for a warning.
constexpr std::size_t kSteps = 5'000'000;
constexpr std::size_t kTextsKept = 100'000;

}  // namespace

void KeptFormulas::Warn(const FormulaIndex& recalculated, std::size_t limit,
                        std::vector<std::string>& warnings) {
  for (std::uint32_t i = 0; i < formulas_.size(); ++i) {
    const FormulaCell& formula = *formulas_[i];
    const CellAddress& cell = formula.address;
    index_.Add(i, cell.sheet,
               formula.array.value_or(CellRange{cell.row, cell.column, cell.row, cell.column}));
  }
  index_.Finish();
  depends_.assign(formulas_.size(), Depends::kUnknown);
  steps_left_ = kSteps;
  std::size_t count = 0;
  for (std::uint32_t i = 0; i < formulas_.size() && steps_left_ > 0; ++i) {
    if (!Decide(i, recalculated) || ++count > limit) continue;
    warnings.push_back(CellText(workbook_, formulas_[i]->address) +
                       " depends on a recalculated cell but keeps its stored value");
  }
  if (count > limit) {
    warnings.push_back(
        fmt::format("{}{} more formulas depend on recalculated cells but keep their stored values",
                    steps_left_ == 0 ? "at least " : "", count - limit));
  }
  shared_texts_.clear();
}

KeptFormulas::Open KeptFormulas::Look(std::uint32_t formula, const FormulaIndex& recalculated) {
  const FormulaCell& cell = *formulas_[formula];
  depends_[formula] = Depends::kOpen;
  Open open{formula, {}};
  FormulaPtr parsed;
  try {
    const auto known = shared_texts_.find(cell.text);
    parsed = known != shared_texts_.end() ? known->second
                                          : ParseFormula(workbook_.formula_texts[cell.text]);
    if (known == shared_texts_.end() && shared_texts_.size() < kTextsKept)
      shared_texts_.emplace(cell.text, parsed);
  } catch (const FormulaError&) {
    return open;  // the host does not warn of formulas that it cannot read
  }
  for (const Reference& reference : ReferencesOf(*parsed, cell.origin, cell.address, workbook_)) {
    for (const CellRange& area : reference.areas) {
      recalculated.VisitRange(reference.sheet, area, [&](std::uint32_t) {
        depends_[formula] = Depends::kYes;
        return false;
      });
      if (depends_[formula] == Depends::kYes) return open;
      index_.VisitRange(reference.sheet, area, [&](std::uint32_t other) {
        if (steps_left_ == 0) return false;
        --steps_left_;
        open.reads.push_back(other);
        return true;
      });
    }
  }
  return open;
}

bool KeptFormulas::Decide(std::uint32_t formula, const FormulaIndex& recalculated) {
  std::vector<Open> stack;
  if (depends_[formula] == Depends::kUnknown) stack.push_back(Look(formula, recalculated));
  while (!stack.empty()) {
    if (steps_left_ > 0) --steps_left_;
    Open& top = stack.back();
    const Depends own = depends_[top.formula];
    if (own == Depends::kYes || top.next == top.reads.size()) {
      if (own == Depends::kOpen) depends_[top.formula] = Depends::kNo;
      const bool yes = own == Depends::kYes;
      stack.pop_back();
      if (yes && !stack.empty()) depends_[stack.back().formula] = Depends::kYes;
      continue;
    }
    const std::uint32_t other = top.reads[top.next++];
    if (depends_[other] == Depends::kYes) {
      depends_[top.formula] = Depends::kYes;
    } else if (depends_[other] == Depends::kUnknown) {
      stack.push_back(Look(other, recalculated));
    }
  }
  return depends_[formula] == Depends::kYes;
}

}  // namespace zavhost
