#pragma once
// The structure of a workbook file: relationships, the workbook part and its sheets.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/xlsx/xml_reader.h"
#include "host/xlsx/xml_text.h"
#include "host/xlsx/zip_archive.h"

namespace zavhost {

/// A part's text in UTF-8. Throws WorkbookError with the part's name.
DecodedXml ReadXmlPart(ZipArchive& archive, std::string_view part);
/// The error to throw for a part whose XML is not well formed.
WorkbookError DamagedPart(std::string_view part, const XmlError& error);

struct SheetPart {
  std::u16string name;
  std::string part;  // empty for a sheet without cells, such as a chart sheet
};

/// The contents of the workbook part and its relationships.
struct WorkbookParts {
  std::vector<SheetPart> sheets;
  std::optional<std::string> shared_strings;
  std::vector<DefinedName> names;
  bool date1904 = false;
};

/// Throws WorkbookError if the archive does not contain a usable workbook.
WorkbookParts ReadWorkbookParts(ZipArchive& archive);

}  // namespace zavhost
