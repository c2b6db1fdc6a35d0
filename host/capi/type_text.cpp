#include "host/capi/type_text.h"

#include <optional>

#include "host/capi/native_call.h"
#include "host/workbook/value.h"

namespace zavhost {
namespace {

std::optional<TypeLetter> LetterOf(char16_t letter, bool wide) {
  if (wide) {
    switch (letter) {
      case u'C':
        return TypeLetter::kWideText;
      case u'F':
        return TypeLetter::kWideBuffer;
      case u'D':
        return TypeLetter::kCountedWideText;
      case u'G':
        return TypeLetter::kCountedWideBuffer;
      case u'K':
        return TypeLetter::kNumberArray;
      default:
        return std::nullopt;
    }
  }
  constexpr std::u16string_view kLetters = u"ALBEHIMJNCFDGKQU";
  constexpr TypeLetter kMeanings[] = {TypeLetter::kBoolean,
                                      TypeLetter::kBooleanPointer,
                                      TypeLetter::kNumber,
                                      TypeLetter::kNumberPointer,
                                      TypeLetter::kUnsignedShort,
                                      TypeLetter::kShort,
                                      TypeLetter::kShortPointer,
                                      TypeLetter::kInteger,
                                      TypeLetter::kIntegerPointer,
                                      TypeLetter::kNarrowText,
                                      TypeLetter::kNarrowBuffer,
                                      TypeLetter::kCountedNarrowText,
                                      TypeLetter::kCountedNarrowBuffer,
                                      TypeLetter::kSmallNumberArray,
                                      TypeLetter::kValue,
                                      TypeLetter::kValueOrReference};
  const std::size_t at = kLetters.find(letter);
  if (at == std::u16string_view::npos) return std::nullopt;
  return kMeanings[at];
}

std::string Unusable(char16_t letter) {
  const std::string quoted = "'" + Utf8FromUtf16(std::u16string_view(&letter, 1)) + "'";
  if (letter == u'P' || letter == u'R')
    return quoted + " is for value records from before Excel 2007, which 64-bit add-ins do not use";
  if (letter == u'O') return quoted + " (an array in three words) is not supported";
  if (letter == u'X') return quoted + " (an asynchronous call) is not supported";
  return quoted + " is not a type letter";
}

/// Removes the marks at the end; false if they contradict each other.
bool ReadMarks(std::u16string_view& text, TypeText& type) {
  bool thread_safe = false;
  while (!text.empty()) {
    const char16_t last = text.back();
    if (last == u'!') {
      type.is_volatile = true;
    } else if (last == u'#') {
      type.is_macro_type = true;
    } else if (last == u'$') {
      thread_safe = true;
    } else if (last != u'&') {
      break;
    }
    text.remove_suffix(1);
  }
  return !(thread_safe && type.is_macro_type);
}

bool CanBeChangedInPlace(TypeLetter letter) {
  switch (letter) {
    case TypeLetter::kBooleanPointer:
    case TypeLetter::kNumberPointer:
    case TypeLetter::kShortPointer:
    case TypeLetter::kIntegerPointer:
    case TypeLetter::kNarrowBuffer:
    case TypeLetter::kCountedNarrowBuffer:
    case TypeLetter::kWideBuffer:
    case TypeLetter::kCountedWideBuffer:
    case TypeLetter::kSmallNumberArray:
    case TypeLetter::kNumberArray:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::variant<TypeText, std::string> ParseTypeText(std::u16string_view text) {
  TypeText type;
  if (!ReadMarks(text, type)) return std::string("'#' and '$' exclude each other");
  if (text.empty()) return std::string("there is no result letter");
  if (text[0] >= u'1' && text[0] <= u'9') {
    type.result_argument = static_cast<std::size_t>(text[0] - u'0');
    text.remove_prefix(1);
  } else if (text[0] == u'>') {
    type.result_argument = 1;
    text.remove_prefix(1);
  }
  bool result_read = type.result_argument != 0;
  while (!text.empty()) {
    const bool wide = text.size() > 1 && text[1] == u'%';
    const std::optional<TypeLetter> letter = LetterOf(text[0], wide);
    if (!letter) return Unusable(text[0]);
    text.remove_prefix(wide ? 2 : 1);
    if (result_read) {
      type.arguments.push_back(*letter);
    } else {
      type.result = *letter;
      result_read = true;
    }
  }
  if (type.arguments.size() > MachineArguments::kLimit)
    return std::string("more than 60 arguments are not supported");
  if (type.result_argument != 0) {
    if (type.result_argument > type.arguments.size())
      return std::string("the result refers to an argument that does not exist");
    type.result = type.arguments[type.result_argument - 1];
    if (!CanBeChangedInPlace(type.result))
      return std::string("the result refers to an argument that cannot be changed in place");
  }
  return type;
}

bool IsScalar(TypeLetter letter) {
  switch (letter) {
    case TypeLetter::kSmallNumberArray:
    case TypeLetter::kNumberArray:
    case TypeLetter::kValue:
    case TypeLetter::kValueOrReference:
      return false;
    default:
      return true;
  }
}

}  // namespace zavhost
