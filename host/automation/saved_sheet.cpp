#include "host/automation/saved_sheet.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "host/automation/cell_places.h"
#include "host/automation/saved_chart.h"
#include "host/report/new_workbook.h"
#include "host/report/stored_formula.h"

namespace zavhost {
namespace {

lxw_row_t Row(std::int32_t row) { return static_cast<lxw_row_t>(row); }
lxw_col_t Column(std::int32_t column) { return static_cast<lxw_col_t>(column); }

std::uint8_t AlignmentOf(std::int32_t alignment) {
  switch (alignment) {
    case -4131:
      return LXW_ALIGN_LEFT;
    case -4108:
      return LXW_ALIGN_CENTER;
    case -4152:
      return LXW_ALIGN_RIGHT;
    case 5:
      return LXW_ALIGN_FILL;
    case -4130:
      return LXW_ALIGN_JUSTIFY;
    case 7:
      return LXW_ALIGN_CENTER_ACROSS;
    case -4117:
      return LXW_ALIGN_DISTRIBUTED;
    default:
      return LXW_ALIGN_NONE;
  }
}

lxw_format* NewFormat(lxw_workbook* book, const CellStyle& style) {
  const CellStyle usual;
  lxw_format* const format = workbook_add_format(book);
  if (format == nullptr) throw std::bad_alloc();
  if (style.number_format != usual.number_format)
    format_set_num_format(format, Utf8FromUtf16(style.number_format).c_str());
  if (style.font != usual.font) format_set_font_name(format, Utf8FromUtf16(style.font).c_str());
  format_set_font_size(format, style.size);
  if (style.is_bold) format_set_bold(format);
  if (style.is_italic) format_set_italic(format);
  if (style.font_colour != usual.font_colour)
    format_set_font_color(format, ColourOf(style.font_colour));
  if (style.pattern != kNoPattern) {
    format_set_pattern(format, LXW_PATTERN_SOLID);
    format_set_bg_color(format, ColourOf(style.fill_colour));
  }
  format_set_align(format, AlignmentOf(style.alignment));
  if (style.wraps) format_set_text_wrap(format);
  if (!style.is_locked) format_set_unlocked(format);
  return format;
}

/// One sheet while it is written.
class SheetSaver {
 public:
  SheetSaver(lxw_worksheet* saved, Book& book, SheetState& sheet, SavedFormats& formats)
      : saved_(saved), cells_(book.CellsOf(sheet)), sheet_(sheet), formats_(formats) {}

  void SaveCells() {
    for (const auto& [cell, style] : sheet_.styles.cells())
      Check(worksheet_write_blank(saved_, Row(cell.row), Column(cell.column), FormatAt(cell)));
    for (const CellRange& area : sheet_.merged) {
      Check(worksheet_merge_range(saved_, Row(area.first_row), Column(area.first_column),
                                  Row(area.last_row), Column(area.last_column), "",
                                  FormatAt({area.first_row, area.first_column})));
    }
    for (const auto& [cell, formula] : sheet_.formulas) SaveFormula(cell, formula);
    const CellRange used = cells_.used_range().value_or(CellRange{0, 0, -1, -1});
    for (std::int32_t column = used.first_column; column <= used.last_column; ++column) {
      for (const Sheet::Entry& entry : cells_.column(column)) {
        if (!sheet_.formulas.contains({entry.row, column}))
          SaveValue({entry.row, column}, entry.value);
      }
    }
  }

  void SaveLines() {
    std::set<std::int32_t> columns = sheet_.hidden_columns, rows = sheet_.hidden_rows;
    for (const auto& [column, width] : sheet_.column_widths) columns.insert(column);
    for (const auto& [column, style] : sheet_.styles.columns()) columns.insert(column);
    for (const auto& [row, height] : sheet_.row_heights) rows.insert(row);
    for (const auto& [row, style] : sheet_.styles.rows()) rows.insert(row);
    lxw_row_col_options options{};
    for (const std::int32_t column : columns) {
      options.hidden = sheet_.hidden_columns.contains(column) ? 1 : 0;
      const auto width = sheet_.column_widths.find(column);
      const CellStyle* style = sheet_.styles.OfColumn(column);
      Check(worksheet_set_column_opt(
          saved_, Column(column), Column(column),
          width == sheet_.column_widths.end() ? LXW_DEF_COL_WIDTH : width->second,
          style == nullptr ? nullptr : formats_.Of(*style), &options));
    }
    for (const std::int32_t row : rows) {
      options.hidden = sheet_.hidden_rows.contains(row) ? 1 : 0;
      const auto height = sheet_.row_heights.find(row);
      const auto style = sheet_.styles.rows().find(row);
      Check(worksheet_set_row_opt(
          saved_, Row(row),
          height == sheet_.row_heights.end() ? LXW_DEF_ROW_HEIGHT : height->second,
          style == sheet_.styles.rows().end() ? nullptr : formats_.Of(style->second), &options));
    }
  }

  void SaveTables() const {
    for (const auto& table : sheet_.tables) {
      std::vector<std::string> headings;
      for (const std::u16string& heading : table->columns)
        headings.push_back(Utf8FromUtf16(heading));
      std::vector<lxw_table_column> columns(headings.size());
      std::vector<lxw_table_column*> places;
      for (std::size_t i = 0; i < headings.size(); ++i) {
        columns[i].header = headings[i].data();
        places.push_back(&columns[i]);
      }
      places.push_back(nullptr);
      std::string name = Utf8FromUtf16(table->name);
      lxw_table_options options{};
      options.name = name.data();
      options.columns = places.data();
      options.no_header_row = table->heading_rows == 0 ? 1 : 0;
      options.total_row = table->total_rows > 0 ? 1 : 0;
      const CellRange& range = table->range;
      Check(worksheet_add_table(saved_, Row(range.first_row), Column(range.first_column),
                                Row(range.last_row), Column(range.last_column), &options));
    }
  }

  void SaveView() const {
    const SheetView& view = sheet_.view;
    if (!view.has_gridlines) worksheet_gridlines(saved_, LXW_HIDE_ALL_GRIDLINES);
    worksheet_set_zoom(saved_, static_cast<std::uint16_t>(view.zoom));
    if (view.is_frozen && (view.split_row > 0 || view.split_column > 0))
      worksheet_freeze_panes(saved_, Row(view.split_row), Column(view.split_column));
  }

  void SavePage() const {
    const PageLayout& page = sheet_.page;
    if (page.orientation == 2) worksheet_set_landscape(saved_);
    if (page.zoom == 0) {
      worksheet_fit_to_pages(saved_, static_cast<std::uint16_t>(page.pages_wide),
                             static_cast<std::uint16_t>(page.pages_tall));
    } else if (page.zoom != 100) {
      worksheet_set_print_scale(saved_, static_cast<std::uint16_t>(page.zoom));
    }
    std::u16string area = page.print_area;
    std::erase(area, u'$');
    if (const auto range = ParseRangeName(Utf8FromUtf16(area))) {
      Check(worksheet_print_area(saved_, Row(range->first_row), Column(range->first_column),
                                 Row(range->last_row), Column(range->last_column)));
    }
  }

 private:
  lxw_format* FormatAt(const CellPosition& cell) const {
    return formats_.Of(sheet_.styles.At(cell.row, cell.column));
  }

  void SaveValue(const CellPosition& cell, const Value& value) const {
    const lxw_row_t row = Row(cell.row);
    const lxw_col_t column = Column(cell.column);
    lxw_format* const format = FormatAt(cell);
    if (const double* number = value.number()) {
      Check(worksheet_write_number(saved_, row, column, *number, format));
    } else if (const bool* boolean = value.boolean()) {
      Check(worksheet_write_boolean(saved_, row, column, *boolean ? 1 : 0, format));
    } else if (const std::u16string* text = value.text()) {
      Check(worksheet_write_string(saved_, row, column, Utf8FromUtf16(*text).c_str(), format));
    } else if (value.error() != nullptr) {
      // The library knows errors as results only.
      const std::string error = Utf8FromUtf16(GeneralText(value));
      Check(worksheet_write_formula_str(saved_, row, column, ("=" + error).c_str(), format,
                                        error.c_str()));
    }
  }

  void SaveFormula(const CellPosition& cell, const CellFormula& formula) const {
    const Value& value = cells_.At(cell.row, cell.column);
    const double* known = value.number();
    const double number = known == nullptr ? 0 : *known;
    const std::string text = "=" + StoredFormula(formula.text);
    lxw_format* const format = FormatAt(cell);
    if (formula.array) {
      const CellRange& area = *formula.array;
      const auto write = formula.is_dynamic ? worksheet_write_dynamic_array_formula_num
                                            : worksheet_write_array_formula_num;
      Check(write(saved_, Row(area.first_row), Column(area.first_column), Row(area.last_row),
                  Column(area.last_column), ("{" + text + "}").c_str(), format, number));
    } else if (known != nullptr) {
      Check(worksheet_write_formula_num(saved_, Row(cell.row), Column(cell.column), text.c_str(),
                                        format, number));
    } else {
      Check(worksheet_write_formula_str(saved_, Row(cell.row), Column(cell.column), text.c_str(),
                                        format, Utf8FromUtf16(GeneralText(value)).c_str()));
    }
  }

  lxw_worksheet* saved_;
  const Sheet& cells_;
  SheetState& sheet_;
  SavedFormats& formats_;
};

}  // namespace

lxw_format* SavedFormats::Of(const CellStyle& style) {
  if (style == CellStyle()) return nullptr;
  const auto known = std::find_if(formats_.begin(), formats_.end(),
                                  [&](const auto& held) { return held.first == style; });
  if (known != formats_.end()) return known->second;
  return formats_.emplace_back(style, NewFormat(book_, style)).second;
}

void SaveSheet(lxw_workbook* saved_book, lxw_worksheet* saved, Book& book, SheetState& sheet,
               SavedFormats& formats) {
  SheetSaver saver(saved, book, sheet, formats);
  saver.SaveLines();
  saver.SaveTables();
  saver.SaveCells();
  saver.SaveView();
  saver.SavePage();
  for (const auto& chart : sheet.charts) {
    const CellPosition cell = CellAt(sheet, chart->left, chart->top);
    SaveChart(saved_book, saved, *chart, cell, chart->left - LeftOf(sheet, cell.column),
              chart->top - TopOf(sheet, cell.row));
  }
}

}  // namespace zavhost
