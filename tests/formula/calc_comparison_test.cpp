// The host's worksheet functions against those of another spreadsheet, LibreOffice Calc: the
// formulas and values that calc/record.py has recorded. Every difference is listed with its reason
// in calc/differences.tsv.

#include <doctest/doctest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "formula/sample_context.h"
#include "host/formula/elementwise.h"
#include "host/workbook/cell_names.h"
#include "support/workbooks.h"

namespace {

using namespace zavhost;

std::filesystem::path FileOf(const char* name) {
  return std::filesystem::path(ZAVREL_SOURCE_DIR) / "tests/formula/calc" / name;
}

/// The lines of a file that are neither empty nor remarks, divided at tabulators.
std::vector<std::vector<std::string>> FieldsOf(const char* name) {
  std::ifstream lines(FileOf(name));
  std::vector<std::vector<std::string>> found;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.starts_with("#")) continue;
    std::vector<std::string>& fields = found.emplace_back();
    std::size_t begin = 0;
    for (std::size_t tab; (tab = line.find('\t', begin)) != std::string::npos; begin = tab + 1) {
      fields.push_back(line.substr(begin, tab - begin));
    }
    fields.push_back(line.substr(begin));
  }
  return found;
}

Workbook TwoSheets() {
  Workbook book;
  book.sheets.emplace_back(u"Sheet1");
  book.sheets.emplace_back(u"Other sheet");
  book.sheets[1].HideRow(2);
  return book;
}

/// The cells of calc/cells.txt.
class Cells : public sample::Context {
 public:
  Cells() : Context(TwoSheets()) {
    std::uint32_t sheet = 0;
    for (const std::vector<std::string>& fields : FieldsOf("cells.txt")) {
      const auto [word, rest] = SplitAtFirstBlank(fields.front());
      if (word == "sheet") {
        sheet = workbook().FindSheet(Utf16FromUtf8(rest)).value();
      } else if (word == "name") {
        const auto [name, text] = SplitAtFirstBlank(rest);
        DefineName(Utf16FromUtf8(name), Utf16FromUtf8(text));
      } else if (word != "hide") {
        Fill(word, rest, sheet);
      }
    }
  }

  /// The whole range; the sample's own reading stops early.
  ArrayPtr ReadRange(std::uint32_t sheet, const CellRange& range, RangeExtent extent) override {
    const Sheet& cells = workbook().sheets[sheet];
    const CellRange read = extent == RangeExtent::kUsed ? cells.Clipped(range) : range;
    Array array{read.rows(), read.columns(), {}};
    for (std::int32_t row = read.first_row; row <= read.last_row; ++row) {
      for (std::int32_t column = read.first_column; column <= read.last_column; ++column) {
        array.values.push_back(cells.At(row, column));
      }
    }
    return std::make_shared<const Array>(std::move(array));
  }

 private:
  static std::pair<std::string, std::string> SplitAtFirstBlank(const std::string& text) {
    const std::size_t blank = text.find(' ');
    return {text.substr(0, blank), text.substr(blank + 1)};
  }
};

/// A formula, where it stands, and what Calc gives.
struct Recorded {
  explicit Recorded(const std::vector<std::string>& fields)
      : formula(fields[1]), calc(fields[2]), is_array(calc.starts_with("{")) {
    const std::size_t colon = fields[0].find(':');
    first = sample::CellNamed(fields[0].substr(0, colon));
    last = is_array ? sample::CellNamed(fields[0].substr(colon + 1)) : first;
  }

  std::string formula;
  std::string calc;
  bool is_array;
  CellAddress first;
  CellAddress last;
};

/// The operand in the cells of a formula: a single row, column or value is repeated.
Operand InCells(const Operand& operand, const Recorded& recorded) {
  if (!recorded.is_array) return ElementAt(operand, 0, 0);
  Array array{recorded.last.row - recorded.first.row + 1,
              recorded.last.column - recorded.first.column + 1,
              {}};
  for (std::int32_t row = 0; row < array.rows; ++row) {
    for (std::int32_t column = 0; column < array.columns; ++column) {
      array.values.push_back(ElementAt(operand, row, column));
    }
  }
  return std::make_shared<const Array>(std::move(array));
}

/// 12 significant digits; near zero, where cancellation decides, an absolute difference of 1E-14.
bool AreClose(double a, double b) {
  const double difference = std::fabs(a - b);
  return difference <= 1e-14 || difference <= 1e-12 * std::max(std::fabs(a), std::fabs(b));
}

/// True for what Excel shows where Calc has an error of its own: an invalid argument (502), another
/// kind of argument than it takes (504), an iteration without an end (523).
bool Stands(ErrorCode error, const std::u16string& calc) {
  if (calc == u"Err:502") {
    return error == ErrorCode::kNum || error == ErrorCode::kValue || error == ErrorCode::kRef;
  }
  if (calc == u"Err:504") return error == ErrorCode::kValue;
  return calc == u"Err:523" && error == ErrorCode::kNum;
}

/// Calc's booleans are numbers with a format, which only the first cell of an array formula has.
bool AreSameBoolean(const Value& ours, const Value& calc) {
  return ours.boolean() != nullptr && calc.number() != nullptr &&
         *calc.number() == (*ours.boolean() ? 1.0 : 0.0);
}

bool Agree(const Value& ours, const Value& calc) {
  if (ours.number() != nullptr && calc.number() != nullptr) {
    return AreClose(*ours.number(), *calc.number());
  }
  if (ours.error() != nullptr && calc.text() != nullptr) return Stands(*ours.error(), *calc.text());
  return ours == calc;
}

bool Agree(const Operand& ours, const Operand& calc, const Recorded& recorded) {
  if (!recorded.is_array) return Agree(std::get<Value>(ours), std::get<Value>(calc));
  const auto& our_values = std::get<ArrayPtr>(ours)->values;
  const auto& calc_values = std::get<ArrayPtr>(calc)->values;
  return std::equal(
      our_values.begin(), our_values.end(), calc_values.begin(), calc_values.end(),
      [](const Value& a, const Value& b) { return Agree(a, b) || AreSameBoolean(a, b); });
}

/// A line of differences.tsv: a formula, in which "..." stands for anything, what the host gives,
/// "..." for anything else than Calc, and the reason.
struct Difference {
  explicit Difference(const std::vector<std::string>& fields)
      : formula(fields[0]), ours(fields.at(1)) {
    CHECK_MESSAGE((fields.size() == 3 && !fields[2].empty()), "no reason: " << formula);
  }

  std::string formula;
  std::string ours;
  bool is_met = false;
};

/// True if the text consists of what stands between the dots of the pattern, in that order.
bool Matches(std::string_view text, std::string_view pattern) {
  const std::size_t dots = pattern.find("...");
  if (dots == std::string_view::npos) return text == pattern;
  if (!text.starts_with(pattern.substr(0, dots))) return false;
  const std::string_view rest = pattern.substr(dots + 3);
  for (std::size_t at = dots; at <= text.size(); ++at) {
    if (Matches(text.substr(at), rest)) return true;
  }
  return false;
}

bool IsListed(std::vector<Difference>& differences, const std::string& formula,
              const std::string& ours) {
  for (Difference& difference : differences) {
    if (Matches(formula, difference.formula) && Matches(ours, difference.ours)) {
      difference.is_met = true;
      return true;
    }
  }
  return false;
}

TEST_CASE("formulas give what Calc gives, or differ as listed") {
  Cells cells;
  std::vector<Difference> differences;
  for (const auto& fields : FieldsOf("differences.tsv")) differences.emplace_back(fields);
  int compared = 0;
  for (const std::vector<std::string>& fields : FieldsOf("values.tsv")) {
    const Recorded recorded(fields);
    cells.set_caller(recorded.first);
    const auto value_of = [&](const std::string& formula) {
      return EvaluateFormula(*ParseFormula(Utf16FromUtf8(formula)), recorded.first,
                             recorded.is_array, cells);
    };
    const Operand ours = InCells(value_of(recorded.formula), recorded);
    ++compared;
    if (Agree(ours, value_of(recorded.calc), recorded)) continue;
    const std::string shown = sample::Shown(ours);
    if (IsListed(differences, recorded.formula, shown)) continue;
    FAIL_CHECK(fields[0] << "\t" << recorded.formula << "\t" << shown << "\t" << recorded.calc);
  }
  for (const Difference& difference : differences) {
    CHECK_MESSAGE(difference.is_met, "listed, but it does not differ so: " << difference.formula);
  }
  CHECK(compared > 5000);
}

}  // namespace
