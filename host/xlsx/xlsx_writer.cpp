#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <new>

#include "host/xlsx/file_io.h"
#include "host/xlsx/messages.h"
#include "host/xlsx/package.h"
#include "host/xlsx/sheet_writer.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

/// The cells to change on each sheet, in the order of the file, including all cells of array
/// formulas.
using ChangedCells = std::map<std::uint32_t, std::vector<CellPosition>>;

ChangedCells CollectCells(const Workbook& workbook, const std::vector<CellAddress>& changed) {
  std::map<CellAddress, CellRange> arrays;
  for (const FormulaCell& formula : workbook.formulas) {
    if (formula.array) arrays.emplace(formula.address, *formula.array);
  }
  ChangedCells cells;
  for (const CellAddress& address : changed) {
    std::vector<CellPosition>& of_sheet = cells[address.sheet];
    const auto array = arrays.find(address);
    const CellRange range =
        array == arrays.end() ? CellRange{address.row, address.column, address.row, address.column}
                              : array->second;
    for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
      for (std::int32_t column = range.first_column; column <= range.last_column; ++column) {
        of_sheet.push_back({row, column});
      }
    }
  }
  for (auto& [sheet, of_sheet] : cells) {
    std::sort(of_sheet.begin(), of_sheet.end());
    of_sheet.erase(std::unique(of_sheet.begin(), of_sheet.end()), of_sheet.end());
  }
  return cells;
}

void RewriteSheetPart(ZipArchive& archive, const SheetPart& sheet_part, const Sheet& sheet,
                      const std::vector<CellPosition>& cells) {
  const DecodedXml xml = ReadXmlPart(archive, sheet_part.part);
  try {
    archive.Replace(sheet_part.part, EncodeXml(RewriteSheet(xml.text, sheet, cells), xml.encoding));
  } catch (const XmlError& error) {
    throw DamagedPart(sheet_part.part, error);
  }
}

std::string RewriteArchive(std::string_view bytes, const Workbook& workbook,
                           const ChangedCells& cells, const XlsxLimits& limits) {
  ZipArchive archive(bytes, limits);
  const WorkbookParts parts = ReadWorkbookParts(archive);
  for (const auto& [index, of_sheet] : cells) {
    if (index >= parts.sheets.size() || index >= workbook.sheets.size() ||
        parts.sheets[index].name != workbook.sheets[index].name() ||
        parts.sheets[index].part.empty()) {
      throw WorkbookError("its sheets have changed since it was read");
    }
    RewriteSheetPart(archive, parts.sheets[index], workbook.sheets[index], of_sheet);
  }
  return archive.Finish();
}

std::string RewriteFile(const std::filesystem::path& source, const Workbook& workbook,
                        const std::vector<CellAddress>& changed, const XlsxLimits& limits) {
  try {
    std::string bytes = ReadFile(source, limits.file_bytes);
    if (changed.empty()) return bytes;
    return RewriteArchive(bytes, workbook, CollectCells(workbook, changed), limits);
  } catch (const WorkbookError& error) {
    throw WorkbookError(fmt::format("{}: {}", PrintablePath(source), error.what()));
  } catch (const std::bad_alloc&) {
    throw WorkbookError(fmt::format("{}: not enough memory to change it", PrintablePath(source)));
  }
}

}  // namespace

void WriteXlsx(const std::filesystem::path& source, const std::filesystem::path& target,
               const Workbook& workbook, const std::vector<CellAddress>& changed,
               const XlsxLimits& limits) {
  const std::string bytes = RewriteFile(source, workbook, changed, limits);
  try {
    WriteFile(target, bytes);
  } catch (const WorkbookError& error) {
    throw WorkbookError(fmt::format("{}: {}", PrintablePath(target), error.what()));
  }
}

}  // namespace zavhost
