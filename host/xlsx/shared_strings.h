#pragma once
// The texts that cells of a workbook share, and the rich text that both they and cells hold.

#include <cstddef>
#include <string_view>
#include <vector>

#include "host/workbook/value.h"
#include "host/xlsx/xml_reader.h"

namespace zavhost {

/// At the start of a rich-text element (si, is): its plain text, read up to its end. Runs are
/// joined; readings (phonetic runs) are left out. `scratch` is working space.
std::u16string ReadRichText(XmlReader& reader, std::string& scratch);

/// The texts of a shared-strings part. Throws XmlError, and WorkbookError for more than `limit`.
std::vector<Text> ReadSharedStrings(std::string_view xml, std::size_t limit);

}  // namespace zavhost
