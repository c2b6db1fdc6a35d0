#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <map>

#include "host/xlsx/chart_writer.h"
#include "host/xlsx/file_io.h"
#include "host/xlsx/messages.h"
#include "host/xlsx/package.h"
#include "host/xlsx/sheet_writer.h"
#include "host/xlsx/xlsx_file.h"
#include "host/xlsx/xml_reader.h"

namespace zavhost {
namespace {

/// What changes on each sheet.
using ChangedSheets = std::map<std::uint32_t, SheetChanges>;

ChangedSheets CollectChanges(const Workbook& workbook, const XlsxChanges& changes) {
  ChangedSheets sheets;
  for (const CellAddress& cell : changes.cells)
    sheets[cell.sheet].cells.push_back({cell.row, cell.column});
  for (const FormulaCell& formula : workbook.formulas) {
    const CellAddress& cell = formula.address;
    if (changes.values_only) sheets[cell.sheet].values_only = true;
    if (!formula.is_dynamic || !sheets.contains(cell.sheet)) continue;
    sheets[cell.sheet].spills.emplace(CellPosition{cell.row, cell.column}, *formula.array);
  }
  if (changes.values_only) {
    for (const CellAddress& cell : workbook.unreadable_formulas)
      sheets[cell.sheet].values_only = true;
  }
  for (auto& [number, sheet] : sheets) {
    std::sort(sheet.cells.begin(), sheet.cells.end());
    sheet.cells.erase(std::unique(sheet.cells.begin(), sheet.cells.end()), sheet.cells.end());
  }
  return sheets;
}

/// How large a part may be that is in memory twice for a while, beside the workbook of so many
/// bytes and what was changed before.
std::uint64_t RoomForPart(const ZipArchive& archive, std::uint64_t kept_bytes) {
  const std::uint64_t used = kept_bytes + archive.replaced_bytes();
  const XlsxLimits& limits = archive.limits();
  return std::min(limits.part_bytes, (std::max(limits.changed_bytes, used) - used) / 2);
}

/// Rewrites a part with a function of its text.
void RewritePart(ZipArchive& archive, std::string_view part, std::uint64_t kept_bytes,
                 const std::function<std::string(std::string_view)>& rewrite) {
  const DecodedXml xml = ReadXmlPart(archive, part, RoomForPart(archive, kept_bytes));
  std::string rewritten = NamingPart(part, [&] { return rewrite(xml.text); });
  if (rewritten != xml.text) archive.Replace(part, EncodeXml(std::move(rewritten), xml.encoding));
}

/// A part without the elements of a name for which `is_unwanted` holds at their start.
std::string WithoutElements(std::string_view xml, std::string_view name,
                            const std::function<bool(const XmlReader&)>& is_unwanted) {
  std::string kept;
  std::size_t copied = 0;
  XmlReader reader(xml);
  while (reader.NextStart()) {
    if (reader.name() != name || !is_unwanted(reader)) continue;
    kept.append(xml.substr(copied, reader.begin() - copied));
    reader.SkipElement();
    copied = reader.end();
  }
  return kept.append(xml.substr(copied));
}

/// Takes away the list of the cells with formulas. Excel repairs a workbook in which it names
/// others.
void RemoveCalculationChain(ZipArchive& archive, const WorkbookParts& parts,
                            std::uint64_t kept_bytes) {
  if (!parts.calculation_chain || !archive.Has(*parts.calculation_chain)) return;
  archive.Remove(*parts.calculation_chain);
  RewritePart(archive, RelationshipsPart(parts.workbook), kept_bytes, [](std::string_view xml) {
    return WithoutElements(xml, "Relationship", [](const XmlReader& reader) {
      return reader.Attribute("Type").value_or("").ends_with("/calcChain");
    });
  });
  RewritePart(archive, kContentTypesPart, kept_bytes, [](std::string_view xml) {
    return WithoutElements(xml, "Override", [](const XmlReader& reader) {
      return reader.Attribute("ContentType").value_or("").ends_with("calcChain+xml");
    });
  });
}

void RewriteCharts(ZipArchive& archive, const Workbook& workbook,
                   const FindReference& find_reference) {
  for (const std::string& part : PartsOfType(archive, "drawingml.chart+xml")) {
    if (!archive.Has(part)) continue;
    RewritePart(archive, part, workbook.kept_bytes,
                [&](std::string_view xml) { return RewriteChart(xml, workbook, find_reference); });
  }
}

/// What was not touched was copied as it is; if it is damaged, nobody shall find out later.
void CheckWritten(std::string_view bytes, const XlsxLimits& limits) {
  try {
    ZipArchive written(bytes, limits);
    written.CheckParts();
    ReadWorkbookParts(written);
  } catch (const WorkbookError& error) {
    throw WorkbookError(fmt::format("it cannot be written whole: {}", error.what()));
  }
}

std::string RewriteArchive(std::string_view bytes, const Workbook& workbook,
                           const XlsxChanges& changes, const XlsxLimits& limits) {
  ZipArchive archive(bytes, limits);
  const WorkbookParts parts = ReadWorkbookParts(archive);
  for (const auto& [index, of_sheet] : CollectChanges(workbook, changes)) {
    if (index >= parts.sheets.size() || parts.sheets[index].name != workbook.sheets[index].name() ||
        parts.sheets[index].part.empty())
      throw WorkbookError("its sheets have changed since it was read");
    const auto rewrite = [&sheet = workbook.sheets[index], &edits = of_sheet](
                             std::string_view xml) { return RewriteSheet(xml, sheet, edits); };
    RewritePart(archive, parts.sheets[index].part, workbook.kept_bytes, rewrite);
  }
  if (changes.values_only) RemoveCalculationChain(archive, parts, workbook.kept_bytes);
  if (changes.find_reference) RewriteCharts(archive, workbook, changes.find_reference);
  std::string written = archive.Finish();
  CheckWritten(written, limits);
  return written;
}

}  // namespace

void WriteXlsx(const std::filesystem::path& source, const std::filesystem::path& target,
               const Workbook& workbook, const XlsxChanges& changes, const XlsxLimits& limits) {
  std::string bytes;
  NamingFile(source, [&] {
    bytes = RewriteArchive(ReadFile(source, limits.file_bytes), workbook, changes, limits);
  });
  NamingFile(target, [&] { WriteFile(target, bytes); });
}

}  // namespace zavhost
