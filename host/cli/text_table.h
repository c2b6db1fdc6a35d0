#pragma once
// A table for people: columns as wide as their content, headings underlined, numbers to the right.

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
  /// The lines, each indented by `indent` blanks and without blanks at its end.
  std::string Render(std::size_t indent = 2) const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

/// Characters of a UTF-8 text as a terminal shows them (code points; combining marks count nothing,
/// East Asian wide characters two).
std::size_t DisplayWidth(const std::string& text);

/// `text` broken between words into lines of at most `width` characters.
std::vector<std::string> WrapWords(const std::string& text, std::size_t width);

}  // namespace zavhost
