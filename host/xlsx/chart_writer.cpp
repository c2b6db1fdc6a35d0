#include "host/xlsx/chart_writer.h"

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "host/workbook/text.h"
#include "host/xlsx/sheet_writer.h"
#include "host/xlsx/xml_reader.h"
#include "host/xlsx/xml_text.h"

namespace zavhost {
namespace {

// Excel draws at most 32,000 points of a series in some kinds of charts, and never more than this.
constexpr std::int64_t kMostPoints = 1'000'000;

class ChartRewriter {
 public:
  ChartRewriter(std::string_view xml, const Workbook& workbook, const FindReference& find_reference)
      : xml_(xml), workbook_(workbook), find_reference_(find_reference), reader_(xml) {}

  std::string Rewrite() {
    while (reader_.NextStart()) {
      if (reader_.name() == "numRef") RewriteSource("numCache", true);
      if (reader_.name() == "strRef") RewriteSource("strCache", false);
    }
    CopyUpTo(xml_.size());
    return std::move(out_);
  }

 private:
  void CopyUpTo(std::size_t place) {
    out_.append(xml_.substr(copied_, place - copied_));
    copied_ = place;
  }

  /// At the start of a reference with its formula and, perhaps, stored values.
  void RewriteSource(std::string_view cache_name, bool of_numbers) {
    const std::string_view qualified = reader_.qualified_name();
    prefix_ = qualified.substr(0, qualified.rfind(':') + 1);
    std::string formula;
    std::string format = "General";
    std::size_t place = 0;  // where the stored values begin and end
    std::size_t end = 0;
    while (reader_.NextChild()) {
      if (reader_.name() == "f") {
        reader_.ReadText(formula);
        place = end = reader_.end();
      } else if (reader_.name() == cache_name) {
        place = reader_.begin();
        reader_.ForEachChild("formatCode", [&] {
          format.clear();
          reader_.ReadText(format);
        });
        end = reader_.end();
      } else {
        reader_.SkipElement();
      }
    }
    const std::optional<Reference> cells = find_reference_(Utf16FromUtf8(formula));
    if (place == 0 || !cells || CountOf(*cells) > kMostPoints) return;
    CopyUpTo(place);
    AddCache(cache_name, *cells, of_numbers ? std::optional(format) : std::nullopt);
    copied_ = end;
  }

  CellRange Clipped(const Reference& cells, const CellRange& area) const {
    return workbook_.sheets[cells.sheet].Clipped(area);
  }

  std::int64_t CountOf(const Reference& cells) const {
    std::int64_t count = 0;
    for (const CellRange& area : cells.areas) {
      const CellRange range = Clipped(cells, area);
      count += std::int64_t{range.rows()} * range.columns();
    }
    return count;
  }

  void AddCache(std::string_view name, const Reference& cells,
                const std::optional<std::string>& format) {
    out_ += fmt::format("<{}{}>", prefix_, name);
    if (format) {
      out_ += fmt::format("<{}formatCode>", prefix_);
      AppendCellText(Utf16FromUtf8(*format), out_);
      out_ += fmt::format("</{}formatCode>", prefix_);
    }
    out_ += fmt::format("<{}ptCount val=\"{}\"/>", prefix_, CountOf(cells));
    std::size_t index = 0;
    for (const CellRange& area : cells.areas) {
      const CellRange range = Clipped(cells, area);
      for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
        for (std::int32_t column = range.first_column; column <= range.last_column; ++column)
          AddPoint(index++, workbook_.sheets[cells.sheet].At(row, column), format.has_value());
      }
    }
    out_ += fmt::format("</{}{}>", prefix_, name);
  }

  /// Blank cells have no point; among numbers, texts have none either.
  void AddPoint(std::size_t index, const Value& value, bool of_numbers) {
    std::string content;
    if (const double* number = value.number()) {
      content = of_numbers ? NumberText(*number) : Utf8FromUtf16(GeneralText(*number));
    } else if (const ErrorCode* error = value.error()) {
      content = Utf8FromUtf16(ErrorText(*error));
    } else if (const bool* boolean = value.boolean(); boolean != nullptr && !of_numbers) {
      content = *boolean ? "TRUE" : "FALSE";
    } else if (value.text() != nullptr && !of_numbers) {
      AppendCellText(*value.text(), content);
    } else {
      return;
    }
    out_ += fmt::format("<{0}pt idx=\"{1}\"><{0}v>{2}</{0}v></{0}pt>", prefix_, index, content);
  }

  std::string_view xml_;
  const Workbook& workbook_;
  const FindReference& find_reference_;
  XmlReader reader_;
  std::string_view prefix_;  // of the chart's elements, with its colon
  std::string out_;
  std::size_t copied_ = 0;  // bytes of xml_
};

}  // namespace

std::string RewriteChart(std::string_view xml, const Workbook& workbook,
                         const FindReference& find_reference) {
  return ChartRewriter(xml, workbook, find_reference).Rewrite();
}

}  // namespace zavhost
