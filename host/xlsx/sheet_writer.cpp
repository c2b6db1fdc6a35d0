#include "host/xlsx/sheet_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>

#include "host/xlsx/sheet_positions.h"
#include "host/xlsx/xml_reader.h"
#include "host/xlsx/xml_text.h"

namespace zavhost {
namespace {

/// A value as stored in a cell: the cell's `t` attribute (empty: none) and the content of v.
struct StoredValue {
  std::string type;
  std::string content;
  bool is_blank = false;
  bool preserves_space = false;
};

StoredValue Store(const Value& value) {
  StoredValue stored;
  if (const double* number = value.number(); number != nullptr && std::isfinite(*number)) {
    stored.content = NumberText(*number);
  } else if (number != nullptr) {
    stored.type = "e";
    stored.content = Utf8FromUtf16(ErrorText(ErrorCode::kNum));
  } else if (const bool* boolean = value.boolean()) {
    stored.type = "b";
    stored.content = *boolean ? "1" : "0";
  } else if (const ErrorCode* error = value.error()) {
    stored.type = "e";
    stored.content = Utf8FromUtf16(ErrorText(*error));
  } else if (const std::u16string* text = value.text()) {
    stored.type = "str";
    AppendCellText(*text, stored.content);
    stored.preserves_space = NeedsSpacePreserved(*text);
  } else {
    stored.is_blank = true;
  }
  return stored;
}

/// The prefix of a name with its colon: "x:" in "x:row".
std::string_view PrefixOf(std::string_view qualified_name) {
  return qualified_name.substr(0, qualified_name.rfind(':') + 1);
}

class SheetRewriter {
 public:
  SheetRewriter(std::string_view xml, const Sheet& sheet, const SheetChanges& changes)
      : xml_(xml),
        sheet_(sheet),
        changes_(changes),
        cells_(changes.cells),
        is_there_(cells_.size()) {}

  std::string Rewrite() {
    FindPresentCells();
    out_.reserve(xml_.size() + xml_.size() / 8);  // most sheets hardly grow
    reader_ = XmlReader(xml_);
    reader_.Next();
    reader_.ForEachChild("sheetData", [this] { RewriteRows(); });
    CopyUpTo(xml_.size());
    return std::move(out_);
  }

 private:
  /// Notes which of the cells and rows exist in the part. A file may have them in any order.
  void FindPresentCells() {
    XmlReader reader(xml_);
    SheetPositions positions;
    bool has_data = false;
    reader.Next();
    reader.ForEachChild("sheetData", [&] {
      has_data = true;
      reader.ForEachChild("row", [&] {
        NoteRow(positions.StartRow(reader));
        reader.ForEachChild("c", [&] {
          const std::size_t place = PlaceOf(positions.StartCell(reader));
          if (place < cells_.size()) is_there_[place] = true;
          reader.SkipElement();
        });
      });
    });
    if (!has_data) throw XmlError("it holds no sheet data");
    std::sort(rows_there_.begin(), rows_there_.end());
  }

  void NoteRow(std::int32_t row) {
    const auto found = std::lower_bound(cells_.begin(), cells_.end(), CellPosition{row, 0});
    if (found != cells_.end() && found->row == row) rows_there_.push_back(row);
  }

  /// The index of a cell among those to change, or their number if it is not among them.
  std::size_t PlaceOf(const CellPosition& cell) const {
    const auto found = std::lower_bound(cells_.begin(), cells_.end(), cell);
    const bool is_it = found != cells_.end() && *found == cell;
    return is_it ? static_cast<std::size_t>(found - cells_.begin()) : cells_.size();
  }

  void CopyUpTo(std::size_t place) {
    out_.append(xml_.substr(copied_, place - copied_));
    copied_ = place;
  }

  /// Writes the reader's current empty-element tag as a start tag.
  void OpenEmptyElement() {
    CopyUpTo(reader_.end() - 2);
    out_ += '>';
    copied_ = reader_.end();
  }

  void RewriteRows() {
    prefix_ = PrefixOf(reader_.qualified_name());
    const std::string data_name(reader_.qualified_name());
    if (reader_.is_empty_element()) {
      if (cells_.empty()) return reader_.SkipElement();
      OpenEmptyElement();
      AddRowsBefore(kSheetRows);
      out_ += fmt::format("</{}>", data_name);
      reader_.SkipElement();
      return;
    }
    reader_.ForEachChild("row", [this] {
      const std::int32_t row = positions_.StartRow(reader_);
      CopyUpTo(reader_.begin());
      AddRowsBefore(row);
      RewriteRow(row);
    });
    CopyUpTo(reader_.begin());
    AddRowsBefore(kSheetRows);
  }

  void RewriteRow(std::int32_t row) {
    // The cells to create in this row, if this is the first element for the row.
    std::size_t missing = FirstMissing({row, 0});
    const bool has_missing = missing < cells_.size() && cells_[missing].row == row;
    const CellPosition row_end{row, kSheetColumns};
    if (reader_.is_empty_element()) {
      if (has_missing) {
        const std::string name(reader_.qualified_name());
        OpenEmptyElement();
        AddCells(missing, row_end);
        out_ += fmt::format("</{}>", name);
      }
      reader_.SkipElement();
      return;
    }
    reader_.ForEachChild("c", [&] {
      const CellPosition cell = positions_.StartCell(reader_);
      CopyUpTo(reader_.begin());
      if (has_missing) AddCells(missing, std::min(cell, row_end));
      if (PlaceOf(cell) < cells_.size() || (changes_.values_only && HasFormula())) {
        RewriteCell(cell);
      } else {
        reader_.SkipElement();
      }
    });
    CopyUpTo(reader_.begin());
    if (has_missing) AddCells(missing, row_end);
  }

  /// The first cell from `from` on that does not exist in the part yet.
  std::size_t FirstMissing(const CellPosition& from) const {
    auto place = static_cast<std::size_t>(std::lower_bound(cells_.begin(), cells_.end(), from) -
                                          cells_.begin());
    while (place < cells_.size() && cells_[place].row == from.row && is_there_[place]) ++place;
    return place;
  }

  /// Creates the missing cells before `end` in its row, starting with number `place`.
  void AddCells(std::size_t& place, const CellPosition& end) {
    for (; place < cells_.size() && cells_[place] < end; ++place) {
      if (is_there_[place]) continue;
      AddCell(cells_[place]);
      is_there_[place] = true;
    }
  }

  /// Creates the missing rows up to `end`, with their cells.
  void AddRowsBefore(std::int32_t end) {
    while (next_row_place_ < cells_.size() && cells_[next_row_place_].row < end) {
      const std::int32_t row = cells_[next_row_place_].row;
      std::size_t place = next_row_place_;
      while (next_row_place_ < cells_.size() && cells_[next_row_place_].row == row) {
        ++next_row_place_;
      }
      if (std::binary_search(rows_there_.begin(), rows_there_.end(), row)) continue;
      out_ += fmt::format("<{}row r=\"{}\">", prefix_, row + 1);
      AddCells(place, {row, kSheetColumns});
      out_ += fmt::format("</{}row>", prefix_);
    }
  }

  void AddCell(const CellPosition& cell) {
    const StoredValue stored = Store(sheet_.At(cell.row, cell.column));
    if (stored.is_blank) return;
    out_ += fmt::format("<{}c r=\"{}\"", prefix_, Utf8FromUtf16(A1Text(cell.row, cell.column)));
    if (!stored.type.empty()) out_ += fmt::format(" t=\"{}\"", stored.type);
    out_ += '>';
    AddValueElement(stored);
    out_ += fmt::format("</{}c>", prefix_);
  }

  /// At the start of a cell: whether it has a formula.
  bool HasFormula() const {
    XmlReader ahead = reader_;
    bool has_formula = false;
    ahead.ForEachChild("f", [&] {
      has_formula = true;
      ahead.SkipElement();
    });
    return has_formula;
  }

  void AddValueElement(const StoredValue& stored) {
    if (stored.is_blank) return;
    out_ += fmt::format("<{}v{}>{}</{}v>", prefix_,
                        stored.preserves_space ? " xml:space=\"preserve\"" : "", stored.content,
                        prefix_);
  }

  /// At the start of a cell: writes the cell with its new value.
  void RewriteCell(const CellPosition& cell) {
    const StoredValue stored = Store(sheet_.At(cell.row, cell.column));
    const std::string name(reader_.qualified_name());
    const bool is_empty = reader_.is_empty_element();
    if (changes_.values_only) {
      RewriteStartTag({{"t", stored.type}, {"cm", {}}});
    } else {
      RewriteStartTag({{"t", stored.type}});
    }
    if (is_empty) {
      reader_.SkipElement();
      if (stored.is_blank) return;
      out_.resize(out_.size() - 2);  // "/>"
      out_ += '>';
      AddValueElement(stored);
      out_ += fmt::format("</{}>", name);
      return;
    }
    // The value comes after the formula; without a formula it comes first.
    std::size_t value_place = out_.size();
    while (reader_.NextChild()) {
      const bool is_value = reader_.name() == "v" || reader_.name() == "is";
      const bool is_formula = reader_.name() == "f";
      CopyUpTo(reader_.begin());
      if (is_formula) RewriteFormulaTag(cell);
      reader_.SkipElement();
      if (is_value || (is_formula && changes_.values_only)) copied_ = reader_.end();
      CopyUpTo(reader_.end());
      if (is_formula) value_place = out_.size();
    }
    CopyUpTo(reader_.begin());
    const std::string rest = out_.substr(value_place);
    out_.resize(value_place);
    AddValueElement(stored);
    out_ += rest;
    CopyUpTo(reader_.end());
  }

  /// Gives attributes of the current start tag other values, takes away those with an empty one,
  /// and adds `t` if it is missing. Copies the tag.
  void RewriteStartTag(std::initializer_list<XmlAttribute> edits) {
    for (const XmlAttribute& attribute : reader_.attributes()) {
      const auto edit = std::find_if(edits.begin(), edits.end(), [&](const XmlAttribute& other) {
        return other.name == attribute.name;
      });
      if (edit == edits.end()) continue;
      const auto name_begin = static_cast<std::size_t>(attribute.name.data() - xml_.data());
      const auto value_begin = static_cast<std::size_t>(attribute.raw.data() - xml_.data());
      const std::size_t value_end = value_begin + attribute.raw.size();
      if (edit->raw.empty()) {
        CopyUpTo(xml_.find_last_not_of(" \t\r\n", name_begin - 1) + 1);
        copied_ = value_end + 1;
      } else {
        CopyUpTo(value_begin);
        out_ += edit->raw;
        copied_ = value_end;
      }
    }
    for (const XmlAttribute& edit : edits) {
      if (edit.name != "t" || edit.raw.empty() || reader_.FindAttribute("t") != nullptr) continue;
      const std::vector<XmlAttribute>& attributes = reader_.attributes();
      const std::string_view last =
          attributes.empty() ? reader_.qualified_name() : attributes.back().raw;
      const std::size_t quote = attributes.empty() ? 0 : 1;
      const std::size_t end = static_cast<std::size_t>(last.data() - xml_.data()) + last.size();
      CopyUpTo(end + quote);
      out_ += fmt::format(" t=\"{}\"", edit.raw);
    }
    CopyUpTo(reader_.end());
  }

  /// At the start of the formula of a cell.
  void RewriteFormulaTag(const CellPosition& cell) {
    const auto spill = changes_.spills.find(cell);
    if (spill != changes_.spills.end()) {
      const std::string range = Utf8FromUtf16(A1Text(spill->second));
      RewriteStartTag({{"ref", range}});
    }
  }

  std::string_view xml_;
  const Sheet& sheet_;
  const SheetChanges& changes_;
  const std::vector<CellPosition>& cells_;
  std::vector<bool> is_there_;            // of cells_: exists in the part, or was already created
  std::vector<std::int32_t> rows_there_;  // rows of cells_ that exist in the part, ascending
  XmlReader reader_{""};
  SheetPositions positions_;
  std::string prefix_;
  std::string out_;
  std::size_t copied_ = 0;          // bytes of xml_
  std::size_t next_row_place_ = 0;  // index in cells_: rows before it are done
};

}  // namespace

std::string NumberText(double number) {
  char buffer[32];
  const std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, number);
  std::string text(buffer, result.ptr);
  std::replace(text.begin(), text.end(), 'e', 'E');
  return text;
}

std::string RewriteSheet(std::string_view xml, const Sheet& sheet, const SheetChanges& changes) {
  return SheetRewriter(xml, sheet, changes).Rewrite();
}

}  // namespace zavhost
