#pragma once
// What files put in front of names that Excel shows without it.

#include <string_view>

#include "host/workbook/text.h"

namespace zavhost {

/// Functions that are newer than the file format, those of add-ins and unknown ones, and the
/// variables of LET.
inline constexpr std::u16string_view kFileMarks[] = {u"_xlfn.", u"_xlws.", u"_xludf.", u"_xll.",
                                                     u"_xlpm."};

inline bool HasMark(std::u16string_view name, std::u16string_view mark) {
  return EqualIgnoringCase(name.substr(0, mark.size()), mark);
}

inline std::u16string_view WithoutFileMarks(std::u16string_view name) {
  for (const std::u16string_view mark : kFileMarks) {
    if (HasMark(name, mark)) name.remove_prefix(mark.size());
  }
  return name;
}

}  // namespace zavhost
