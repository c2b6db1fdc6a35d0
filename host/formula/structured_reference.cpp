#include "host/formula/structured_reference.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "host/workbook/text.h"

namespace zavhost {
namespace {

/// Reads what stands between the brackets.
class SpecifierParser {
 public:
  SpecifierParser(std::u16string_view text, StructuredReference& out) : text_(text), out_(out) {}

  /// "", "Price", "#All", "@", "@Price", "@[Unit price]", "[#Headers],[Price]:[Tax]". False for
  /// anything else.
  bool Parse() {
    SkipBlanks();
    if (Take(u'@')) {
      out_.this_row = true;
      if (AtEnd()) return true;
      return Peek() == u'[' ? ParseColumns() && AtEnd() : ParsePlain();
    }
    if (AtEnd()) return true;
    return Peek() == u'[' ? ParseList() : ParsePlain();
  }

 private:
  bool AtEnd() const { return next_ == text_.size(); }
  char16_t Peek() const { return text_[next_]; }
  bool Take(char16_t unit) {
    if (AtEnd() || Peek() != unit) return false;
    ++next_;
    return true;
  }
  void SkipBlanks() {
    while (Take(u' ') || Take(u'\n') || Take(u'\r')) {
    }
  }

  /// The rest as an item or a column without brackets of its own.
  bool ParsePlain() {
    const bool is_item = Peek() == u'#';
    std::u16string name = TakeName(false);
    if (!AtEnd() || name.empty()) return false;
    if (is_item) return AddItem(name);
    out_.first_column = out_.last_column = std::move(name);
    return true;
  }

  bool ParseList() {
    while (true) {
      SkipBlanks();
      if (AtEnd() || Peek() != u'[') return false;
      const bool is_item = next_ + 1 < text_.size() && text_[next_ + 1] == u'#';
      if (is_item ? !ParseItem() : !ParseColumns()) return false;
      SkipBlanks();
      if (AtEnd()) return true;
      if (!Take(u',')) return false;
    }
  }

  bool ParseItem() {
    std::u16string name;
    return TakeBracketed(name) && AddItem(name);
  }

  bool ParseColumns() {
    if (!out_.first_column.empty() || !TakeBracketed(out_.first_column)) return false;
    out_.last_column = out_.first_column;
    return !Take(u':') || TakeBracketed(out_.last_column);
  }

  bool TakeBracketed(std::u16string& name) {
    if (!Take(u'[')) return false;
    name = TakeName(true);
    return !name.empty() && Take(u']');
  }

  /// Up to the end or to the closing bracket; "'" takes the next character as it is.
  std::u16string TakeName(bool in_brackets) {
    std::u16string name;
    while (!AtEnd() && !(in_brackets && Peek() == u']')) {
      if (Peek() == u'\'' && next_ + 1 < text_.size()) ++next_;
      name += text_[next_++];
    }
    return name;
  }

  bool AddItem(std::u16string_view item) {
    const std::pair<std::u16string_view, bool*> items[] = {{u"#All", &out_.all},
                                                           {u"#Headers", &out_.headings},
                                                           {u"#Data", &out_.data},
                                                           {u"#Totals", &out_.totals},
                                                           {u"#This Row", &out_.this_row}};
    for (const auto& [name, is_set] : items) {
      if (EqualIgnoringCase(name, item)) return *is_set = true;
    }
    return false;
  }

  std::u16string_view text_;
  StructuredReference& out_;
  std::size_t next_ = 0;
};

/// The first and last row that are meant.
struct Rows {
  std::int32_t first = 0;
  std::int32_t last = 0;
};

std::optional<Rows> RowsOf(const StructuredReference& written, const Table& table) {
  const CellRange& range = table.range;
  const Rows data{range.first_row + table.heading_rows, range.last_row - table.total_rows};
  if (written.all) return Rows{range.first_row, range.last_row};
  const bool with_data = written.data || (!written.headings && !written.totals);
  const bool is_there = (!written.headings || table.heading_rows > 0) &&
                        (!written.totals || table.total_rows > 0) &&
                        (!with_data || data.first <= data.last) &&
                        // Headings and totals without the data between them are no range.
                        (with_data || !written.headings || !written.totals);
  if (!is_there) return std::nullopt;
  const std::int32_t first = written.headings ? range.first_row
                             : with_data      ? data.first
                                              : data.last + 1;
  const std::int32_t last = written.totals ? range.last_row
                            : with_data    ? data.last
                                           : data.first - 1;
  return Rows{first, last};
}

std::optional<std::int32_t> ColumnOf(std::u16string_view name, const Table& table) {
  const auto found =
      std::find_if(table.columns.begin(), table.columns.end(),
                   [&](const std::u16string& column) { return EqualIgnoringCase(column, name); });
  if (found == table.columns.end()) return std::nullopt;
  return table.range.first_column + static_cast<std::int32_t>(found - table.columns.begin());
}

}  // namespace

std::optional<StructuredReference> ParseStructuredReference(std::u16string_view text) {
  const std::size_t open = text.find(u'[');
  if (open == std::u16string_view::npos || text.back() != u']') return std::nullopt;
  StructuredReference written;
  written.table = text.substr(0, open);
  if (written.table.find(u'!') != std::u16string::npos) return std::nullopt;
  const std::u16string_view inside = text.substr(open + 1, text.size() - open - 2);
  if (!SpecifierParser(inside, written).Parse()) return std::nullopt;
  return written;
}

Operand ResolveStructured(const StructuredReference& written, const CellAddress& caller,
                          const Workbook& workbook) {
  const Table* table =
      written.table.empty() ? workbook.TableAt(caller) : workbook.FindTable(written.table);
  if (table == nullptr) return Value(ErrorCode::kRef);
  CellRange range = table->range;
  if (!written.first_column.empty()) {
    const auto first = ColumnOf(written.first_column, *table);
    const auto last = ColumnOf(written.last_column, *table);
    if (!first || !last) return Value(ErrorCode::kRef);
    std::tie(range.first_column, range.last_column) = std::minmax(*first, *last);
  }
  const std::optional<Rows> rows = RowsOf(written, *table);
  if (!rows) return Value(ErrorCode::kRef);
  range.first_row = rows->first;
  range.last_row = rows->last;
  if (written.this_row) {
    const bool is_beside =
        caller.sheet == table->sheet && caller.row >= rows->first && caller.row <= rows->last;
    if (!is_beside) return Value(ErrorCode::kValue);
    range.first_row = range.last_row = caller.row;
  }
  return Reference{table->sheet, {range}};
}

}  // namespace zavhost
