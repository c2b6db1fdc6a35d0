#pragma once
// Formula texts in which a sheet has another name or is gone.

#include <functional>
#include <string>
#include <string_view>

namespace zavhost {

/// The text with another name in front of the references to a sheet.
std::u16string WithSheetRenamed(std::u16string_view text, std::u16string_view name,
                                std::u16string_view new_name);
/// The text with #REF! in place of the references to a sheet.
std::u16string WithSheetRemoved(std::u16string_view text, std::u16string_view name);
/// True if all sheets that the text names are known.
bool NamesOnlySheets(std::u16string_view text,
                     const std::function<bool(std::u16string_view)>& is_known);

/// True for what can be the name of cells or of a table.
bool IsDefinedName(std::u16string_view text);

}  // namespace zavhost
