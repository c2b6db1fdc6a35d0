#pragma once
// Fills a report's sheet from top to bottom.

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "analyses/analysis.h"
#include "analyses/texts.h"

namespace zavrel::analyses {

class SheetBuilder {
 public:
  /// A title and a note of what was done stand at the top. These and the labels of rows are given
  /// in English and put into the data's language. Where the name is taken, it gets a number.
  SheetBuilder(const Data& data, std::string_view name, std::string_view title,
               std::string_view note);

  /// An English text of the analyses in the sheet's language.
  std::string Say(std::string_view english) const { return Translated(english, language_); }

  /// The next free row.
  std::uint32_t row() const { return row_; }
  void Skip(std::uint32_t rows) { row_ += rows; }

  Area At(std::uint32_t row, std::uint16_t column, std::uint32_t rows = 1,
          std::uint16_t columns = 1) const {
    return {sheet_.name, row, column, rows, columns};
  }
  void Text(const Area& cell, std::string text, Style style);
  void Number(const Area& cell, double number, Style style);
  Area Formula(const Area& cell, std::string formula, Style style = Style::kNumber);
  Area Array(const Area& area, std::string formula, Style style = Style::kNumber);

  /// A row of headings, the first over the labels; takes a row.
  void Headings(const std::vector<std::string>& headings);
  /// A label and a formula for each column behind it; takes a row.
  Area Row(std::string_view label, const std::vector<std::string>& formulas, Style style);

  void Width(std::uint16_t column, double characters) { sheet_.widths[column] = characters; }
  /// The columns from this one on help charts and are not printed.
  void PrintUpTo(std::uint16_t column) { sheet_.printed_columns = column; }
  /// Below everything; takes as many rows as it has.
  void Add(Chart chart);
  /// Right of the rows at the given place.
  void AddBeside(Chart chart, std::uint32_t row, std::uint16_t column);

  ReportSheet Finish() && { return std::move(sheet_); }

 private:
  Language language_;
  ReportSheet sheet_;
  std::uint32_t row_ = 0;
};

/// "=Name(argument,argument)"
std::string Call(std::string_view function, std::initializer_list<std::string> arguments);
/// The same of each of some data, with further arguments behind it.
std::vector<std::string> CallForEach(std::string_view function,
                                     const std::vector<std::string>& data,
                                     std::string_view further);
/// The parts of a formula in one text.
std::string Joined(std::initializer_list<std::string_view> parts);

/// The values of a variable in one group, for a formula. `category` is a cell with its name.
std::string InGroup(const Variable& variable, const Grouping& grouping, const Area& category);

}  // namespace zavrel::analyses
