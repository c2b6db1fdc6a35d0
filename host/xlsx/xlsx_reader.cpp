#include <fmt/format.h>

#include <new>

#include "host/xlsx/file_io.h"
#include "host/xlsx/messages.h"
#include "host/xlsx/package.h"
#include "host/xlsx/shared_strings.h"
#include "host/xlsx/sheet_reader.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

std::vector<Text> ReadSharedStringsPart(ZipArchive& archive, const WorkbookParts& parts,
                                        const XlsxLimits& limits) {
  if (!parts.shared_strings) return {};
  const DecodedXml xml = ReadXmlPart(archive, *parts.shared_strings);
  try {
    return ReadSharedStrings(xml.text, static_cast<std::size_t>(limits.cells));
  } catch (const XmlError& error) {
    throw DamagedPart(*parts.shared_strings, error);
  }
}

void ReadSheetPart(ZipArchive& archive, const std::string& part, std::uint32_t index,
                   SheetReading& reading) {
  const DecodedXml xml = ReadXmlPart(archive, part);
  try {
    ReadSheet(xml.text, index, reading);
  } catch (const XmlError& error) {
    throw WorkbookError(fmt::format("sheet '{}' is damaged: {}",
                                    Printable(reading.workbook->sheets[index].name()),
                                    error.what()));
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
  const std::vector<Text> shared_strings = ReadSharedStringsPart(archive, parts, limits);
  SheetReading reading{&workbook, &shared_strings, limits.cells};
  for (std::size_t i = 0; i < parts.sheets.size(); ++i) {
    if (parts.sheets[i].part.empty()) continue;
    ReadSheetPart(archive, parts.sheets[i].part, static_cast<std::uint32_t>(i), reading);
  }
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
