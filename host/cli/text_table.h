#pragma once
// A table for users: columns as wide as their content, underlined headings, numbers right-aligned.

#include <cstddef>
#include <string>
#include <vector>

namespace zavhost {

enum class Alignment { kLeft, kRight };

class TextTable {
 public:
  struct Column {
    std::string heading;
    Alignment alignment = Alignment::kLeft;
    std::size_t limit = 60;  // characters; longer text is cut and ends in an ellipsis
  };

  explicit TextTable(std::vector<Column> columns);

  /// One row; missing cells at the end are empty. Line breaks and tabs become blanks.
  void AddRow(std::vector<std::string> cells);
  /// The lines, each indented by `indent` blanks and without trailing blanks.
  std::string Render(std::size_t indent = 2) const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

/// The width of a UTF-8 text on a terminal: its number of code points, where combining marks count
/// as none and East Asian wide characters as two.
std::size_t DisplayWidth(const std::string& text);

/// `text` broken between words into lines of at most `width` characters.
std::vector<std::string> WrapWords(const std::string& text, std::size_t width);

}  // namespace zavhost
