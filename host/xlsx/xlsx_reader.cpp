#include <fmt/format.h>

#include "host/xlsx/file_io.h"
#include "host/xlsx/messages.h"
#include "host/xlsx/metadata_reader.h"
#include "host/xlsx/package.h"
#include "host/xlsx/shared_strings.h"
#include "host/xlsx/sheet_reader.h"
#include "host/xlsx/table_reader.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

std::vector<Text> ReadSharedStringsPart(ZipArchive& archive, const WorkbookParts& parts,
                                        KeptBytes& kept) {
  if (!parts.shared_strings) return {};
  return NamingPart(*parts.shared_strings, [&] {
    XmlWindow window = OpenXmlPart(archive, *parts.shared_strings);
    XmlReader reader(window);
    return ReadSharedStrings(reader, kept);
  });
}

void ReadSheetPart(ZipArchive& archive, const std::string& part, std::uint32_t index,
                   SheetReading& reading) {
  try {
    XmlWindow window = OpenXmlPart(archive, part);
    XmlReader reader(window);
    ReadSheet(reader, index, reading);
  } catch (const XmlError& error) {
    throw WorkbookError(fmt::format("sheet '{}' is damaged: {}",
                                    Printable(reading.workbook->sheets[index].name()),
                                    error.what()));
  }
}

std::vector<bool> ReadMetadataPart(ZipArchive& archive, const WorkbookParts& parts) {
  if (!parts.metadata || !archive.Has(*parts.metadata)) return {};
  const DecodedXml xml = ReadListPart(archive, *parts.metadata);
  return NamingPart(*parts.metadata, [&] { return ReadDynamicArrayMarks(xml.text); });
}

void ReadTables(ZipArchive& archive, const std::string& sheet_part, std::uint32_t index,
                Workbook& workbook) {
  for (const auto& [id, relationship] : ReadRelationships(archive, sheet_part)) {
    if (relationship.type != "table" || !archive.Has(relationship.part)) continue;
    const DecodedXml xml = ReadListPart(archive, relationship.part);
    std::optional<CellRange> filter;
    workbook.tables.push_back(
        NamingPart(relationship.part, [&] { return ReadTable(xml.text, index, filter); }));
    if (filter) workbook.sheets[index].set_filter(*filter);
  }
}

Workbook ReadArchive(ZipArchive& archive, const XlsxLimits& limits) {
  Workbook workbook;
  WorkbookParts parts = ReadWorkbookParts(archive);
  workbook.date1904 = parts.date1904;
  workbook.names = std::move(parts.names);
  for (const SheetPart& sheet : parts.sheets) {
    workbook.sheets.emplace_back(sheet.name).set_has_cells(!sheet.part.empty());
  }
  KeptBytes kept(limits.kept_bytes);
  const std::vector<Text> shared_strings = ReadSharedStringsPart(archive, parts, kept);
  const std::vector<bool> dynamic_marks = ReadMetadataPart(archive, parts);
  SheetReading reading{&workbook, &shared_strings, &dynamic_marks, limits.cells, &kept};
  for (std::size_t i = 0; i < parts.sheets.size(); ++i) {
    if (parts.sheets[i].part.empty()) continue;
    const auto index = static_cast<std::uint32_t>(i);
    ReadSheetPart(archive, parts.sheets[i].part, index, reading);
    ReadTables(archive, parts.sheets[i].part, index, workbook);
  }
  workbook.kept_bytes = kept.taken();
  return workbook;
}

}  // namespace

Workbook ReadXlsx(const std::filesystem::path& file, const XlsxLimits& limits) {
  return ReadNamed(file, [&] {
    ZipArchive archive(ReadFile(file, limits.file_bytes), limits);
    return ReadArchive(archive, limits);
  });
}

}  // namespace zavhost
