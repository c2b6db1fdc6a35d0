#pragma once
// The structure of a workbook file: relationships, the workbook part and its sheets.

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/xlsx/xml_reader.h"
#include "host/xlsx/xml_text.h"
#include "host/xlsx/zip_archive.h"

namespace zavhost {

/// The error to throw for a part whose XML is not well formed, or not as it must be.
WorkbookError DamagedPart(std::string_view part, const XmlError& error);
/// The result of reading a part; an XmlError becomes the WorkbookError with the part's name.
template <class Read>
auto NamingPart(std::string_view part, const Read& read) {
  try {
    return read();
  } catch (const XmlError& error) {
    throw DamagedPart(part, error);
  }
}
/// A part's text in UTF-8. Throws WorkbookError with the part's name, also if it has more bytes.
DecodedXml ReadXmlPart(ZipArchive& archive, std::string_view part, std::uint64_t limit);
/// A part of the lists that a workbook consists of, by the limit for these.
DecodedXml ReadListPart(ZipArchive& archive, std::string_view part);
/// A window on a part of any size. It throws XmlError, and WorkbookError with the part's name.
XmlWindow OpenXmlPart(ZipArchive& archive, std::string_view part);

struct Relationship {
  std::string type;  // the last component of its type: "worksheet"
  std::string part;  // empty if it leads outside the package
};
using Relationships = std::unordered_map<std::string, Relationship>;  // by id

/// The relationships of a part ("" for the package); none if it has no part for them.
Relationships ReadRelationships(ZipArchive& archive, std::string_view of_part);
/// The name of the part with a part's relationships.
std::string RelationshipsPart(std::string_view of_part);
/// The parts whose content type ends so ("chart+xml"), in the order of the list of content types.
std::vector<std::string> PartsOfType(ZipArchive& archive, std::string_view ending);
inline constexpr std::string_view kContentTypesPart = "[Content_Types].xml";

struct SheetPart {
  std::u16string name;
  std::string part;  // empty for a sheet without cells, such as a chart sheet
};

/// The contents of the workbook part and its relationships.
struct WorkbookParts {
  std::string workbook;
  std::vector<SheetPart> sheets;
  std::optional<std::string> shared_strings;
  std::optional<std::string> metadata;           // says which array formulas are dynamic
  std::optional<std::string> calculation_chain;  // lists the cells with formulas
  std::vector<DefinedName> names;
  bool date1904 = false;
};

/// Throws WorkbookError if the archive does not contain a usable workbook.
WorkbookParts ReadWorkbookParts(ZipArchive& archive);

}  // namespace zavhost
