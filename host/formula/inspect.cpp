// The cells that a formula reads, determined without evaluating it.

#include <set>
#include <utility>

#include "host/formula/evaluate.h"
#include "host/formula/expression.h"
#include "host/formula/reference_algebra.h"

namespace zavhost {
namespace {

class ReferenceCollector {
 public:
  ReferenceCollector(const CellAddress& caller, const Workbook& workbook)
      : caller_(caller), workbook_(workbook) {}

  std::vector<Reference> Run(const Formula& formula, const CellAddress& origin) {
    Collect(formula.expression(), Shift::Between(origin, caller_, false));
    // Names are kept in a list and each is read only once, since they may use each other in cycles.
    const Shift name_shift = Shift::Between({}, caller_, true);
    while (!waiting_.empty()) {
      const DefinedName* name = waiting_.back();
      waiting_.pop_back();
      try {
        Collect(ParseFormula(name->text)->expression(), name_shift);
      } catch (const FormulaError&) {
        continue;  // reads nothing; evaluation reports it
      }
    }
    return std::move(found_);
  }

 private:
  void Collect(const Expression& expression, const Shift& shift) {
    // The last steps that were plain references, so that "A1:C3" from two operands counts as a
    // range.
    std::size_t plain = 0;
    for (const Step& step : expression.steps) {
      if (const auto* reference = std::get_if<ReferenceStep>(&step)) {
        plain = Add(*reference, shift) ? plain + 1 : 0;
        continue;
      }
      if (const auto* structured = std::get_if<StructuredReference>(&step)) {
        plain = AddResolved(*structured) ? plain + 1 : 0;
        continue;
      }
      const Operator* op = std::get_if<Operator>(&step);
      if (op != nullptr && *op == Operator::kRange && plain >= 2) {
        JoinLastTwo();
        --plain;
        continue;
      }
      plain = 0;
      if (const auto* name = std::get_if<NameStep>(&step)) AddName(*name);
      if (const auto* call = std::get_if<CallStep>(&step)) {
        for (const Expression& argument : call->arguments) Collect(argument, shift);
      }
    }
  }

  bool Add(const ReferenceStep& step, const Shift& shift) {
    const auto sheet = SheetOf(step.prefix, caller_.sheet, workbook_);
    const auto range = ShiftedRange(step.reference, shift);
    if (!sheet || !range) return false;
    found_.push_back({*sheet, {*range}});
    return true;
  }

  bool AddResolved(const StructuredReference& structured) {
    Operand resolved = ResolveStructured(structured, caller_, workbook_);
    Reference* reference = std::get_if<Reference>(&resolved);
    if (reference == nullptr) return false;
    found_.push_back(std::move(*reference));
    return true;
  }

  void AddName(const NameStep& step) {
    const DefinedName* name = DefinedNameOf(step.prefix, step.name, caller_.sheet, workbook_);
    if (name == nullptr) AddResolved({.table = step.name});
    if (name != nullptr && seen_.insert(name).second) waiting_.push_back(name);
  }

  void JoinLastTwo() {
    const Operand left = found_[found_.size() - 2];
    const Operand joined = CombineReferences(Operator::kRange, left, found_.back());
    const Reference* range = std::get_if<Reference>(&joined);
    if (range == nullptr) return;
    found_.pop_back();
    found_.back() = *range;
  }

  CellAddress caller_;
  const Workbook& workbook_;
  std::vector<Reference> found_;
  std::set<const DefinedName*> seen_;
  std::vector<const DefinedName*> waiting_;
};

}  // namespace

std::vector<Reference> ReferencesOf(const Formula& formula, const CellAddress& origin,
                                    const CellAddress& caller, const Workbook& workbook) {
  return ReferenceCollector(caller, workbook).Run(formula, origin);
}

}  // namespace zavhost
