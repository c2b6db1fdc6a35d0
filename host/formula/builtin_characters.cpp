// Characters and their codes, in Windows' code page 1252 and in Unicode.

#include "host/formula/builtin_groups.h"
#include "host/formula/text_result.h"

namespace zavhost {
namespace {

/// The characters of the codes 128 to 159; all other codes are Unicode's. Codes without a character
/// stand for themselves.
constexpr char16_t kFrom128[] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

Operand Char(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double number = read.Whole(0);
  read.Require(number >= 1 && number <= 255, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const auto code = static_cast<std::size_t>(number);
  const bool is_in_table = code >= 128 && code < 160;
  return TextResult({is_in_table ? kFrom128[code - 128] : static_cast<char16_t>(code)});
}

double CodeOf(char32_t character) {
  if (character < 128 || (character >= 160 && character < 256)) return character;
  const auto* found = std::find(std::begin(kFrom128), std::end(kFrom128), character);
  return found == std::end(kFrom128) ? u'?' : 128.0 + static_cast<double>(found - kFrom128);
}

bool IsSurrogate(double code) { return code >= 0xD800 && code <= 0xDFFF; }

/// CODE and UNICODE: of the first character.
template <bool kIsUnicode>
Operand Code(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  read.Require(!text.empty(), ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const char32_t character = zavrel::FirstCharacter(text).code;
  if (!kIsUnicode) return Value(CodeOf(character));
  return IsSurrogate(character) ? Value(ErrorCode::kValue) : Value(static_cast<double>(character));
}

Operand UniChar(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double code = read.Whole(0);
  read.Require(code >= 1 && code <= 0x10FFFF, ErrorCode::kValue);
  read.Require(!IsSurrogate(code), ErrorCode::kNA);
  if (read.failed()) return read.failure();
  std::u16string character;
  zavrel::AppendUtf16(static_cast<char32_t>(code), character);
  return TextResult(std::move(character));
}

constexpr BuiltInFunction kFunctions[] = {
    {u"CHAR", 1, 1, "s", Char},
    {u"CODE", 1, 1, "s", Code<false>},
    {u"UNICHAR", 1, 1, "s", UniChar},
    {u"UNICODE", 1, 1, "s", Code<true>},
};

}  // namespace

std::span<const BuiltInFunction> CharacterFunctions() { return kFunctions; }

}  // namespace zavhost
