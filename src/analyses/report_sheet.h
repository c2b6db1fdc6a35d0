#pragma once
// A sheet as an analysis describes it, whoever writes it: cells with live formulas, and charts.

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "platform/variant_copies.h"

namespace zavrel::analyses {

/// A block of cells; rows and columns count from 0.
struct Area {
  std::string sheet;
  std::uint32_t row = 0;
  std::uint16_t column = 0;
  std::uint32_t rows = 1;
  std::uint16_t columns = 1;

  /// A part of it that begins so many cells further.
  Area Part(std::uint32_t from_row, std::uint16_t from_column, std::uint32_t part_rows = 1,
            std::uint16_t part_columns = 1) const;
  /// "Data!$B$2:$B$40", with quotes where the sheet's name needs them.
  std::string Text() const;
  /// "B", of its first column.
  std::string Column() const;
  /// "$B$2:$B$40"
  std::string TextInSheet() const;
};

enum class Style {
  kPlain,
  kTitle,
  kNote,
  kHeading,  // of a column
  kLabel,    // of a row
  kNumber,
  kCount,
  kProbability,
};

/// In the words of English Excel, with its "=".
struct Formula {
  std::string text;
  bool is_array = false;
};

struct ReportCell {
  Area area;  // several cells only for an array formula
  std::variant<std::string, double, Formula> content;
  Style style = Style::kPlain;
};

struct Series {
  enum class Look { kMarkers, kLine, kColumns };

  std::string title;
  Area x;
  Area y;
  Look look = Look::kMarkers;
};

struct Chart {
  std::string title;
  std::string x_title;
  std::string y_title;
  std::vector<Series> series;
  Area place;  // its upper left cell
  bool wide = true;
};

struct ReportSheet {
  std::string name;
  std::vector<ReportCell> cells;
  std::vector<Chart> charts;
  std::map<std::uint16_t, double> widths;  // of columns, in characters
  std::uint16_t printed_columns = 0;       // 0: all; further ones help charts
};

}  // namespace zavrel::analyses
