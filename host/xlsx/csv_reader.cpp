#include <fmt/format.h>

#include <new>

#include "host/workbook/cell_names.h"
#include "host/workbook/text.h"
#include "host/xlsx/csv_text.h"
#include "host/xlsx/file_io.h"
#include "host/xlsx/messages.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

/// The number that a text spells. A label that only reads as a date, an amount or a fraction
/// ("1-2", "5 Mar", "1 1/2") stays a text.
std::optional<double> PlainNumber(std::u16string_view text) {
  if (text.find_first_not_of(u"0123456789.,+-eE% \t") != std::u16string_view::npos)
    return std::nullopt;
  const std::size_t sign = text.find_last_of(u"+-");
  const bool has_inner_sign = sign != std::u16string_view::npos && sign > 0 &&
                              (text[sign - 1] >= u'0' && text[sign - 1] <= u'9');
  return has_inner_sign ? std::nullopt : NumberFromText(text);
}

/// Splits comma-separated text into fields. Quoted fields may contain commas, line ends and doubled
/// quotes; lines end in "\n", "\r\n" or "\r".
class CsvReader {
 public:
  CsvReader(std::string_view text, Sheet& sheet, std::uint64_t cells)
      : text_(text), sheet_(sheet), cells_left_(cells) {
    if (text_.starts_with("\xEF\xBB\xBF")) text_.remove_prefix(3);
  }

  void Read() {
    while (!text_.empty()) {
      ReadField();
      StoreField();
      if (text_.empty()) return;
      const bool line_ends = text_.front() != ',';
      text_.remove_prefix(text_.starts_with("\r\n") ? 2 : 1);
      column_ = line_ends ? 0 : column_ + 1;
      row_ += line_ends ? 1 : 0;
    }
  }

 private:
  void ReadField() {
    field_.clear();
    if (text_.starts_with('"')) ReadQuoted();
    // Text after a closing quote belongs to the field, as in spreadsheets.
    const std::size_t end = std::min(text_.find_first_of(",\r\n"), text_.size());
    field_.append(text_.substr(0, end));
    text_.remove_prefix(end);
  }

  void ReadQuoted() {
    const std::int32_t start = row_;
    while (true) {
      text_.remove_prefix(1);
      const std::size_t quote = text_.find('"');
      if (quote == std::string_view::npos) {
        throw WorkbookError(
            fmt::format("the quotation mark that opens in row {} is never closed", start + 1));
      }
      field_.append(text_.substr(0, quote));
      text_.remove_prefix(quote + 1);
      if (!text_.starts_with('"')) return;
      field_.push_back('"');
    }
  }

  void StoreField() {
    if (row_ >= kSheetRows) {
      throw WorkbookError(fmt::format("it has more than {} rows", kSheetRows));
    }
    if (column_ >= kSheetColumns) {
      throw WorkbookError(fmt::format("row {} has more than {} fields", row_ + 1, kSheetColumns));
    }
    Value value = FieldValue();
    if (value.IsBlank()) return;
    if (cells_left_-- == 0) throw WorkbookError("it has more cells than the host can read");
    sheet_.Append(row_, column_, std::move(value));
  }

  Value FieldValue() const {
    if (field_.empty() || field_ == "NA") return {};
    std::u16string text = Utf16FromUtf8(field_);
    if (const std::optional<double> number = PlainNumber(text)) return *number;
    if (const std::optional<ErrorCode> error = ErrorFromText(text)) return *error;
    if (EqualIgnoringCase(text, u"TRUE")) return true;
    if (EqualIgnoringCase(text, u"FALSE")) return false;
    if (text.size() > kLongestText) {
      throw WorkbookError(fmt::format("the text of cell {} is longer than {} characters",
                                      Utf8FromUtf16(A1Text(row_, column_)), kLongestText));
    }
    return Text(std::move(text));
  }

  std::string_view text_;
  Sheet& sheet_;
  std::uint64_t cells_left_;
  std::string field_;
  std::int32_t row_ = 0;
  std::int32_t column_ = 0;
};

/// True if the first line has semicolons but no commas outside quotation marks.
bool IsDividedBySemicolons(std::string_view text) {
  bool is_quoted = false;
  bool has_semicolon = false;
  for (const char c : text) {
    if (c == '"') is_quoted = !is_quoted;
    if (is_quoted) continue;
    if (c == ',') return false;
    if (c == '\r' || c == '\n') break;
    has_semicolon = has_semicolon || c == ';';
  }
  return has_semicolon;
}

}  // namespace

Workbook ParseCsv(std::string_view text, std::uint64_t cells) {
  if (text.find('\0') != std::string_view::npos || !IsValidUtf8(text)) {
    throw WorkbookError("this is not comma-separated text in UTF-8");
  }
  if (IsDividedBySemicolons(text)) {
    throw WorkbookError(
        "the fields of this file seem to be separated by semicolons; commas are expected");
  }
  Workbook workbook;
  CsvReader(text, workbook.sheets.emplace_back(u"Data"), cells).Read();
  return workbook;
}

Workbook ReadCsv(const std::filesystem::path& file, const XlsxLimits& limits) {
  return ReadNamed(file, [&] { return ParseCsv(ReadFile(file, limits.part_bytes), limits.cells); });
}

}  // namespace zavhost
