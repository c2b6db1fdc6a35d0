#pragma once
// The shared texts of a workbook, and the rich text in shared texts and cells.

#include <string>
#include <vector>

#include "host/workbook/value.h"
#include "host/xlsx/kept_bytes.h"
#include "host/xlsx/xml_reader.h"

namespace zavhost {

/// At the start of a rich-text element (si, is): its plain text, read up to its end. Runs are
/// joined, and phonetic runs are omitted. `scratch` is working space.
std::u16string ReadRichText(XmlReader& reader, std::string& scratch);

/// The texts of a shared-strings part. Throws XmlError, and WorkbookError for more than may be
/// kept.
std::vector<Text> ReadSharedStrings(XmlReader& reader, KeptBytes& kept);

}  // namespace zavhost
