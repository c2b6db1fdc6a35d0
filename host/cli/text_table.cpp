#include "host/cli/text_table.h"

#include <algorithm>
#include <sstream>

#include "host/workbook/text.h"

namespace zavhost {
namespace {

using zavrel::IsLowSurrogate;

bool IsCombining(char16_t unit) { return unit >= 0x0300 && unit <= 0x036F; }
bool IsWide(char16_t unit) {
  return (unit >= 0x1100 && unit <= 0x115F) || (unit >= 0x2E80 && unit <= 0xA4CF) ||
         (unit >= 0xAC00 && unit <= 0xD7A3) || (unit >= 0xF900 && unit <= 0xFAFF) ||
         (unit >= 0xFF00 && unit <= 0xFF60);
}
std::size_t UnitWidth(char16_t unit) {
  if (IsLowSurrogate(unit) || IsCombining(unit)) return 0;
  return IsWide(unit) ? 2 : 1;
}

std::string OneLine(const std::string& given, std::size_t limit) {
  std::string text = PrintableUtf8(Utf16FromUtf8(given));
  const std::u16string units = Utf16FromUtf8(text);
  std::size_t width = 0;
  for (std::size_t i = 0; i < units.size(); ++i) {
    width += UnitWidth(units[i]);
    if (width <= limit) continue;
    // Leaves room for the ellipsis, and no half of a surrogate pair before it.
    std::size_t keep = i > 0 ? i - 1 : 0;
    while (keep > 0 && IsLowSurrogate(units[keep])) --keep;
    return Utf8FromUtf16(units.substr(0, keep)) + "\u2026";
  }
  return text;
}

void AppendPadded(std::string& line, const std::string& text, std::size_t width,
                  Alignment alignment) {
  const std::size_t padding = width - std::min(width, DisplayWidth(text));
  if (alignment == Alignment::kRight) line.append(padding, ' ');
  line += text;
  if (alignment == Alignment::kLeft) line.append(padding, ' ');
}

void AppendTrimmed(std::string& out, std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  out += line;
  out += '\n';
}

}  // namespace

std::size_t DisplayWidth(const std::string& text) {
  std::size_t width = 0;
  for (const char16_t unit : Utf16FromUtf8(text)) width += UnitWidth(unit);
  return width;
}

std::vector<std::string> WrapWords(const std::string& text, std::size_t width) {
  std::vector<std::string> lines;
  std::istringstream words(text);
  std::string line;
  for (std::string word; words >> word;) {
    if (!line.empty() && DisplayWidth(line) + 1 + DisplayWidth(word) > width) {
      lines.push_back(std::move(line));
      line.clear();
    }
    if (!line.empty()) line += ' ';
    line += word;
  }
  if (!line.empty()) lines.push_back(std::move(line));
  return lines;
}

TextTable::TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

void TextTable::AddRow(std::vector<std::string> cells) {
  cells.resize(columns_.size());
  for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = OneLine(cells[i], columns_[i].limit);
  rows_.push_back(std::move(cells));
}

std::string TextTable::Render(std::size_t indent) const {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::size_t width = DisplayWidth(columns_[i].heading);
    for (const auto& row : rows_) width = std::max(width, DisplayWidth(row[i]));
    widths.push_back(width);
  }
  std::string out;
  std::string head(indent, ' ');
  std::string rule(indent, ' ');
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    AppendPadded(head, columns_[i].heading, widths[i], columns_[i].alignment);
    head += "  ";
    for (std::size_t n = 0; n < widths[i]; ++n) rule += "\u2500";
    rule += "  ";
  }
  AppendTrimmed(out, std::move(head));
  AppendTrimmed(out, std::move(rule));
  for (const auto& row : rows_) {
    std::string line(indent, ' ');
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      AppendPadded(line, row[i], widths[i], columns_[i].alignment);
      line += "  ";
    }
    AppendTrimmed(out, std::move(line));
  }
  return out;
}

}  // namespace zavhost
