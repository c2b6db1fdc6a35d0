#include "host/xlsx/sheet_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <system_error>
#include <unordered_map>

#include "host/workbook/cell_names.h"
#include "host/xlsx/iso_date.h"
#include "host/xlsx/messages.h"
#include "host/xlsx/shared_strings.h"
#include "host/xlsx/sheet_positions.h"
#include "host/xlsx/xml_reader.h"
#include "host/xlsx/xml_text.h"

namespace zavhost {
namespace {

// More characters than a formula can have, whatever they are.
constexpr std::size_t kMostFormulaBytes = 1 << 16;
// A number in a hash set, with its bucket.
constexpr std::uint64_t kHiddenRowBytes = 32;

/// A number in the form of XML schema doubles, without infinities.
std::optional<double> ParseDouble(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \n"), text.size()));
  text = text.substr(0, text.find_last_not_of(" \n") + 1);
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0.0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (stop != text.data() + text.size()) return std::nullopt;
  if (error == std::errc::result_out_of_range &&
      text.find_first_of('-', 1) != std::string_view::npos)
    return 0;
  if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
  return number;
}

class SheetReader {
 public:
  SheetReader(XmlReader& reader, std::uint32_t sheet, SheetReading& reading)
      : reader_(reader),
        sheet_index_(sheet),
        reading_(reading),
        workbook_(*reading.workbook),
        sheet_(workbook_.sheets[sheet]) {}

  void Read() {
    reader_.Next();
    if (reader_.name() != "worksheet") throw XmlError("it is not a worksheet");
    while (reader_.NextStart()) {
      if (reader_.name() == "sheetData") {
        ReadRows();
      } else {
        if (reader_.name() == "sheetProtection")
          sheet_.set_protected(reader_.BooleanAttribute("sheet"));
        if (reader_.name() == "autoFilter") {
          if (const auto range = ParseRangeName(reader_.Attribute("ref").value_or("")))
            sheet_.set_filter(*range);
        }
        reader_.SkipElement();
      }
    }
    ResolveEarlyMembers();
    sheet_.SortColumns();
  }

 private:
  /// The text of a shared formula and the cell for which it was written.
  struct SharedFormula {
    std::uint32_t text;
    CellAddress origin;
  };
  struct StoredCell {
    CellPosition position;
    std::string type;
    bool has_value = false;
    bool has_formula = false;
    bool is_dynamic = false;
    std::string value;  // the content of v, in UTF-8
    std::optional<std::u16string> inline_text;
  };

  void ReadRows() {
    reader_.ForEachChild("row", [this] {
      const std::int32_t row = positions_.StartRow(reader_);
      if (reader_.BooleanAttribute("hidden")) {
        reading_.kept->Take(kHiddenRowBytes);
        sheet_.HideRow(row);
      }
      reader_.ForEachChild("c", [this] { ReadCell(); });
    });
  }

  void ReadCell() {
    cell_.position = positions_.StartCell(reader_);
    const XmlAttribute* type = reader_.FindAttribute("t");
    cell_.type = type == nullptr ? "n" : type->raw;
    cell_.has_value = cell_.has_formula = false;
    cell_.is_dynamic = IsDynamic(reader_.NumberAttribute("cm"));
    cell_.value.clear();
    cell_.inline_text.reset();
    while (reader_.NextChild()) {
      if (reader_.name() == "v") {
        cell_.has_value = true;
        cell_.value.clear();
        reader_.ReadText(cell_.value);
      } else if (reader_.name() == "f") {
        ReadFormula();
      } else if (reader_.name() == "is") {
        cell_.inline_text = ReadRichText(reader_, scratch_);
      } else {
        reader_.SkipElement();
      }
    }
    StoreCell();
  }

  void StoreCell() {
    Value value = CellValue();
    const auto [row, column] = cell_.position;
    if (!value.IsBlank()) {
      TakeCells(1);
      reading_.kept->Take(sizeof(Sheet::Entry));
      sheet_.Append(row, column, std::move(value));
    } else if (cell_.has_formula) {
      sheet_.Cover({row, column, row, column});
    }
  }

  bool IsDynamic(std::optional<std::uint32_t> metadata) const {
    const std::vector<bool>& marks = *reading_.dynamic_marks;
    return metadata && *metadata < marks.size() && marks[*metadata];
  }

  void TakeCells(std::uint64_t count) {
    if (count > reading_.cells_left)
      throw XmlError("with it, there are more cells than the host can read");
    reading_.cells_left -= count;
  }

  Value CellValue() {
    const std::string& type = cell_.type;
    if (type == "inlineStr") {
      if (!cell_.inline_text) return {};
      return TextValue(std::move(*cell_.inline_text));
    }
    if (!cell_.has_value) return {};
    if (type == "str") return TextValue(UnescapeCellText(cell_.value));
    if (cell_.value.empty()) return {};
    if (type == "n") {
      const std::optional<double> number = ParseDouble(cell_.value);
      if (!number) RejectValue("a number");
      return *number;
    }
    if (type == "s") return SharedText();
    if (type == "b") {
      const bool is_true = cell_.value == "1" || cell_.value == "true";
      if (!is_true && cell_.value != "0" && cell_.value != "false") RejectValue("a boolean");
      return is_true;
    }
    if (type == "e") {
      return ErrorFromText(Utf16FromUtf8(cell_.value)).value_or(ErrorCode::kUnknown);
    }
    if (type == "d") {
      const std::optional<double> serial = SerialFromIsoDate(cell_.value, workbook_.date1904);
      if (!serial) RejectValue("a date");
      return *serial;
    }
    throw XmlError(fmt::format("cell {} has the unknown type '{}'", CellText(), Printable(type)));
  }

  Value SharedText() const {
    const std::optional<std::uint32_t> index = WholeNumber(cell_.value);
    if (!index) RejectValue("the number of a shared text");
    if (*index >= reading_.shared_strings->size()) {
      throw XmlError(fmt::format("cell {} refers to shared text {}, but there are only {}",
                                 CellText(), *index, reading_.shared_strings->size()));
    }
    const Text& text = (*reading_.shared_strings)[*index];
    CheckLength(text->size());
    return text;
  }

  Value TextValue(std::u16string text) const {
    CheckLength(text.size());
    reading_.kept->Take(BytesOf(text));
    return Text(std::move(text));
  }

  void CheckLength(std::size_t length) const {
    if (length > kLongestText) {
      throw XmlError(fmt::format("the text of cell {} has {} characters; at most {} are allowed",
                                 CellText(), length, kLongestText));
    }
  }

  [[noreturn]] void RejectValue(std::string_view wanted) const {
    throw XmlError(fmt::format("cell {} holds '{}', which is not {}", CellText(),
                               Printable(cell_.value), wanted));
  }

  std::string CellText() const {
    return Utf8FromUtf16(A1Text(cell_.position.row, cell_.position.column));
  }

  CellAddress Address() const { return {sheet_index_, cell_.position.row, cell_.position.column}; }

  void ReadFormula() {
    const XmlAttribute* type_attribute = reader_.FindAttribute("t");
    const std::string_view type = type_attribute == nullptr ? "normal" : type_attribute->raw;
    const std::optional<std::uint32_t> shared_index =
        type == "shared" ? reader_.NumberAttribute("si") : std::nullopt;
    const bool is_table = type == "dataTable";
    std::optional<CellRange> array;
    if (type == "array" || is_table) array = ArrayRange();
    const std::string table_text = is_table ? DataTableText(*array) : std::string();
    scratch_.clear();
    reader_.ReadText(scratch_);
    if (is_table) scratch_ = table_text;
    cell_.has_formula = true;
    reading_.kept->Take(2 * sizeof(FormulaCell));  // their array moves when it grows
    if (scratch_.starts_with('=')) scratch_.erase(0, 1);
    if (scratch_.empty()) {
      AddMember(shared_index);
      return;
    }
    const auto text = static_cast<std::uint32_t>(workbook_.formula_texts.size());
    // Of one that is too long, enough to show that.
    scratch_.resize(std::min(scratch_.size(), kMostFormulaBytes));
    std::u16string formula = Utf16FromUtf8(scratch_);
    reading_.kept->Take(BytesOf(formula));
    workbook_.formula_texts.push_back(std::move(formula));
    workbook_.formulas.push_back({Address(), text, Address(), array, array && cell_.is_dynamic});
    if (shared_index) shared_.insert_or_assign(*shared_index, SharedFormula{text, Address()});
  }

  /// What Excel shows for a what-if table, as a formula that no host computes: its input cells, and
  /// the cells above and beside it, on which its values depend.
  std::string DataTableText(const CellRange& range) const {
    std::string text = "TABLE(" + reader_.Attribute("r1").value_or("") + "," +
                       reader_.Attribute("r2").value_or("");
    const auto add = [&text](const CellRange& cells) {
      text += "," + Utf8FromUtf16(A1Text(cells));
    };
    if (range.first_row > 0)
      add({range.first_row - 1, std::max(range.first_column - 1, 0), range.first_row - 1,
           range.last_column});
    if (range.first_column > 0)
      add({range.first_row, range.first_column - 1, range.last_row, range.first_column - 1});
    return text + ")";
  }

  CellRange ArrayRange() {
    const std::optional<std::string> text = reader_.Attribute("ref");
    const std::optional<CellRange> range = text ? ParseRangeName(*text) : std::nullopt;
    if (!range || range->first_row != cell_.position.row ||
        range->first_column != cell_.position.column) {
      throw XmlError(
          fmt::format("the formula of cell {} does not say which cells it fills", CellText()));
    }
    TakeCells(static_cast<std::uint64_t>(range->rows()) *
              static_cast<std::uint64_t>(range->columns()));
    sheet_.Cover(*range);
    return *range;
  }

  /// A cell of a shared formula without its own text.
  void AddMember(std::optional<std::uint32_t> shared_index) {
    if (!shared_index) {
      workbook_.unreadable_formulas.push_back(Address());
      return;
    }
    const auto found = shared_.find(*shared_index);
    if (found == shared_.end())
      early_members_.push_back({workbook_.formulas.size(), *shared_index});
    const SharedFormula shared = found == shared_.end() ? SharedFormula{} : found->second;
    workbook_.formulas.push_back({Address(), shared.text, shared.origin, std::nullopt, false});
  }

  /// Cells that come before the cell with the text; if the text never comes, they are unreadable.
  void ResolveEarlyMembers() {
    std::vector<FormulaCell>& formulas = workbook_.formulas;
    std::vector<bool> dropped;
    for (const auto& [place, shared_index] : early_members_) {
      const auto found = shared_.find(shared_index);
      if (found != shared_.end()) {
        formulas[place].text = found->second.text;
        formulas[place].origin = found->second.origin;
        continue;
      }
      workbook_.unreadable_formulas.push_back(formulas[place].address);
      dropped.resize(formulas.size());
      dropped[place] = true;
    }
    if (dropped.empty()) return;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < formulas.size(); ++i) {
      if (!dropped[i]) formulas[kept++] = formulas[i];
    }
    formulas.resize(kept);
  }

  struct EarlyMember {
    std::size_t place;
    std::uint32_t shared_index;
  };

  XmlReader& reader_;
  std::uint32_t sheet_index_;
  SheetReading& reading_;
  Workbook& workbook_;
  Sheet& sheet_;
  SheetPositions positions_;
  StoredCell cell_;
  std::string scratch_;
  std::unordered_map<std::uint32_t, SharedFormula> shared_;
  std::vector<EarlyMember> early_members_;
};

}  // namespace

void ReadSheet(XmlReader& reader, std::uint32_t sheet, SheetReading& reading) {
  SheetReader(reader, sheet, reading).Read();
}

}  // namespace zavhost
