// What a recalculation says of its formulas.

#include <fmt/format.h>

#include <algorithm>

#include "host/calc/formula_text.h"
#include "host/calc/recalculation.h"

namespace zavhost {
namespace {

constexpr std::size_t kWarningLimit = 20;
constexpr std::size_t kLineLength = 64;  // without the formula

/// Lines of which only the first ones are shown, with the number of the others.
class Warnings {
 public:
  explicit Warnings(std::vector<std::string>& lines) : lines_(lines) {}

  /// Whether the next line is shown; if not, it only counts.
  bool Wants() { return ++count_ <= kWarningLimit; }
  void Add(std::string line) { lines_.push_back(std::move(line)); }
  /// `rest` has a place for the number.
  void Finish(fmt::format_string<std::size_t> rest) {
    if (count_ > kWarningLimit) lines_.push_back(fmt::format(rest, count_ - kWarningLimit));
  }

 private:
  std::vector<std::string>& lines_;
  std::size_t count_ = 0;
};

}  // namespace

void Recalculation::Report() {
  std::vector<CellAddress>& written = report_.written;
  std::sort(written.begin(), written.end());
  written.erase(std::unique(written.begin(), written.end()), written.end());
  WarnOfKept();
  WarnOfDependent();
  WarnOfUnreadable();
  std::size_t left = options_.report_limit;
  for (std::uint32_t i = 0; i < entries_.size(); ++i) {
    Entry& entry = entries_[i];
    const auto problem = problems_.find(i);
    const auto doubt = doubts_.find(i);
    const bool is_computed = !entry.is_kept && problem == problems_.end();
    const bool has_new_value = entry.changed && !entry.before.IsBlank();
    if (is_computed) {
      ++report_.computed;
      report_.changed += has_new_value ? 1u : 0u;
      report_.without_value += entry.before.IsBlank() ? 1u : 0u;
    } else {
      ++report_.kept;
    }
    const bool is_stale = entry.is_kept && (entry.before.IsBlank() || stale_.contains(i));
    const bool is_shown = options_.report_every_formula || entry.uses_add_in || has_new_value ||
                          is_stale || problem != problems_.end() || doubt != doubts_.end();
    if (!is_shown) continue;
    const std::size_t length = workbook_.formula_texts[CellOf(i).text].size() + kLineLength;
    if (length > left) {
      ++report_.not_listed;
      continue;
    }
    left -= length;
    const FormulaCell& formula = CellOf(i);
    const CellAddress& cell = formula.address;
    RecalculatedCell& row = report_.cells.emplace_back();
    row.address = cell;
    row.array = formula.array;
    row.formula =
        u"=" + ShownFormulaText(workbook_.formula_texts[formula.text], formula.origin, cell);
    row.changed = has_new_value;
    row.before = std::move(entry.before);
    row.after = workbook_.sheets[cell.sheet].At(cell.row, cell.column);
    row.is_volatile = entry.is_volatile;
    if (problem != problems_.end()) row.problem = problem->second;
    if (entry.is_kept) row.problem = "not computed by this host";
    if (doubt != doubts_.end()) row.doubt = "depends on " + Name(doubt->second);
    if (is_stale) row.doubt = stale_.contains(i) ? Name(stale_.at(i)) + " has changed" : "no value";
  }
}

void Recalculation::WarnOfKept() {
  Warnings warnings(report_.warnings);
  for (std::uint32_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    if (!entry.is_kept || problems_.contains(i)) continue;
    const auto stale = stale_.find(i);
    if (entry.before.IsBlank() || stale != stale_.end()) ++report_.doubtful;
    if (!warnings.Wants()) continue;
    std::string line = Name(i) + " uses " + PrintableUtf8(uses_.Of(CellOf(i).text).foreign) +
                       ", which this host does not compute";
    if (entry.before.IsBlank()) {
      line += ", and has no stored value";
    } else {
      line += ": its stored value is kept";
      if (stale != stale_.end())
        line += fmt::format(" and may be wrong, since {} has changed", Name(stale->second));
    }
    warnings.Add(std::move(line));
  }
  warnings.Finish("{} more formulas use something that this host does not compute");
}

void Recalculation::WarnOfDependent() {
  Warnings warnings(report_.warnings);
  for (const auto& [entry, root] : doubts_) {
    ++report_.doubtful;
    if (warnings.Wants())
      warnings.Add(fmt::format("{} depends on {} and may be wrong", Name(entry), Name(root)));
  }
  warnings.Finish("{} more values depend on such cells and may be wrong");
}

void Recalculation::WarnOfUnreadable() {
  Warnings warnings(report_.warnings);
  for (const CellAddress& cell : workbook_.unreadable_formulas) {
    if (warnings.Wants())
      warnings.Add(CellText(workbook_, cell) +
                   " shares a formula that is not in the workbook: its stored value is kept");
  }
  warnings.Finish("{} more cells share formulas that are not in the workbook");
}

}  // namespace zavhost
