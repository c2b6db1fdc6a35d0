#pragma once
// The texts of Excel's error values.

#include <array>
#include <cstdint>
#include <string_view>

namespace formula {

struct ErrorText {
  std::int32_t code;  // in the C API
  std::u16string_view text;
};

inline constexpr std::array<ErrorText, 14> kErrorTexts = {{{0, u"#NULL!"},
                                                           {7, u"#DIV/0!"},
                                                           {15, u"#VALUE!"},
                                                           {23, u"#REF!"},
                                                           {29, u"#NAME?"},
                                                           {36, u"#NUM!"},
                                                           {42, u"#N/A"},
                                                           {43, u"#GETTING_DATA"},
                                                           {45, u"#SPILL!"},
                                                           {46, u"#CONNECT!"},
                                                           {47, u"#BLOCKED!"},
                                                           {48, u"#UNKNOWN!"},
                                                           {49, u"#FIELD!"},
                                                           {50, u"#CALC!"}}};

}  // namespace formula
