#pragma once
// Results with a text and numbers in each row.

#include <initializer_list>
#include <string>
#include <vector>

#include "excel/xxloper.h"

namespace zavrel {

class ResultTable {
 public:
  /// At least 2 columns, the first of which has the texts.
  explicit ResultTable(std::size_t columns) : columns_(columns) {}

  /// A not-a-number, and what is missing at the end of the row, shows as the empty text.
  void Add(std::string text, std::initializer_list<double> numbers);
  std::size_t rows() const { return rows_.size(); }
  XXloper Finish() &&;

 private:
  struct Row {
    std::string text;
    std::vector<double> numbers;
  };

  std::size_t columns_;
  std::vector<Row> rows_;
};

/// A row with the reason why there is no result, and #NUM! in its other cells.
XXloper ReasonRow(const std::string& reason, std::size_t columns);

}  // namespace zavrel
