#include "host/xlsx/xml_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <system_error>

#include "host/workbook/value.h"
#include "host/xlsx/messages.h"
#include "host/xlsx/xml_reader.h"

namespace zavhost {
namespace {

bool StartsWith(std::string_view bytes, std::initializer_list<unsigned char> start) {
  return bytes.size() >= start.size() &&
         std::equal(start.begin(), start.end(), bytes.begin(), [](unsigned char wanted, char byte) {
           return wanted == static_cast<unsigned char>(byte);
         });
}

XmlEncoding DetectEncoding(std::string_view bytes) {
  if (StartsWith(bytes, {0xFF, 0xFE}) || StartsWith(bytes, {'<', 0})) {
    return XmlEncoding::kUtf16LittleEndian;
  }
  if (StartsWith(bytes, {0xFE, 0xFF}) || StartsWith(bytes, {0, '<'})) {
    return XmlEncoding::kUtf16BigEndian;
  }
  return XmlEncoding::kUtf8;
}

std::string Utf8FromUtf16Bytes(std::string_view bytes, bool big_endian) {
  if (bytes.size() % 2 != 0) throw XmlError("its UTF-16 text ends in the middle of a character");
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<char16_t>(big_endian ? first << 8 | second : second << 8 | first);
  }
  for (std::u16string_view rest = units; !rest.empty();) {
    const auto [code, length] = zavrel::FirstCharacter(rest);
    if (length == 1 && code >= 0xD800 && code < 0xE000)
      throw XmlError("its UTF-16 text holds half a character");
    rest.remove_prefix(length);
  }
  return Utf8FromUtf16(units);
}

/// The encoding in the XML declaration, in lower case; empty if there is none.
std::string DeclaredEncoding(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (!text.starts_with("<?xml")) return {};
  const std::string_view declaration = text.substr(0, text.find("?>"));
  const std::size_t start = declaration.find_first_of("\"'", declaration.find("encoding"));
  if (start == std::string_view::npos) return {};
  const std::size_t finish = declaration.find(declaration[start], start + 1);
  std::string name(declaration.substr(start + 1, std::min<std::size_t>(finish - start - 1, 40)));
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return name;
}

/// The encoding of a part that begins so. Throws XmlError for one that is not supported.
XmlEncoding CheckedEncoding(std::string_view bytes) {
  const XmlEncoding encoding = DetectEncoding(bytes);
  if (encoding != XmlEncoding::kUtf8) return encoding;
  const std::string declared = DeclaredEncoding(bytes);
  if (!declared.empty() && declared != "utf-8" && declared != "us-ascii") {
    throw XmlError(fmt::format("it is encoded in '{}'; only UTF-8 and UTF-16 are supported",
                               Printable(declared)));
  }
  return encoding;
}

/// How many bytes at the end begin a character that they do not end.
std::size_t CutCharacter(std::string_view bytes, XmlEncoding encoding) {
  if (encoding != XmlEncoding::kUtf8) {
    const std::size_t odd = bytes.size() % 2;
    const std::size_t high = encoding == XmlEncoding::kUtf16BigEndian ? 2 : 1;
    if (bytes.size() < odd + 2) return odd;
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - odd - high]);
    return (byte & 0xFC) == 0xD8 ? odd + 2 : odd;  // the first half of a pair
  }
  for (std::size_t back = 1; back <= std::min<std::size_t>(bytes.size(), 3); ++back) {
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
    if ((byte & 0xC0) == 0x80) continue;  // not the first of its character
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return length > back ? back : 0;
  }
  return 0;
}

void CheckCharacters(std::string_view text) {
  bool only_ascii = true;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r') {
      throw XmlError("it holds a control character");
    }
    only_ascii = only_ascii && byte < 0x80;
  }
  if (!only_ascii && !IsValidUtf8(text)) throw XmlError("it holds bytes that are not UTF-8");
}

/// The character for the name of an entity, without "&" and ";".
std::optional<char32_t> EntityCharacter(std::string_view name) {
  if (name == "amp") return U'&';
  if (name == "lt") return U'<';
  if (name == "gt") return U'>';
  if (name == "quot") return U'"';
  if (name == "apos") return U'\'';
  if (!name.starts_with('#')) return std::nullopt;
  name.remove_prefix(1);
  const std::uint32_t code =
      (name.starts_with('x') ? WholeNumber(name.substr(1), 16) : WholeNumber(name)).value_or(0);
  const bool is_half = code >= 0xD800 && code <= 0xDFFF;
  if (code == 0 || code > 0x10FFFF || is_half) return std::nullopt;
  return static_cast<char32_t>(code);
}

/// The code unit of an escape _xHHHH_ at the start of `text`.
template <typename Char>
std::optional<char16_t> EscapedUnit(std::basic_string_view<Char> text) {
  if (text.size() < 7 || text[0] != '_' || text[1] != 'x' || text[6] != '_') return std::nullopt;
  std::uint32_t unit = 0;
  for (std::size_t i = 2; i < 6; ++i) {
    const auto c = static_cast<std::uint32_t>(text[i]);
    const std::uint32_t lower = c | 0x20u;
    if (c >= '0' && c <= '9') {
      unit = unit << 4 | (c - '0');
    } else if (lower >= 'a' && lower <= 'f') {
      unit = unit << 4 | (lower - 'a' + 10);
    } else {
      return std::nullopt;
    }
  }
  return static_cast<char16_t>(unit);
}

/// Whether XML cannot hold the first character of a text.
bool BeginsUnstorable(std::u16string_view text) {
  const auto [code, units] = zavrel::FirstCharacter(text);
  return (code < 0x20 && code != '\t' && code != '\n') ||
         (units == 1 && (code >= 0xFFFE || (code >= 0xD800 && code < 0xE000)));
}

/// Whether a text would begin like an escape once it is stored: that of a character that XML cannot
/// hold begins with the "_" that ends another one.
bool WouldBeginEscape(std::u16string_view text) {
  if (text.size() < 7 || !text.starts_with(u"_x")) return false;
  std::u16string start(text.substr(0, 7));
  if (BeginsUnstorable(text.substr(6))) start[6] = u'_';
  return EscapedUnit(std::u16string_view(start)).has_value();
}

}  // namespace

DecodedXml DecodeXml(std::string bytes) {
  DecodedXml decoded;
  decoded.encoding = CheckedEncoding(bytes);
  if (decoded.encoding == XmlEncoding::kUtf8) {
    decoded.text = std::move(bytes);
  } else {
    decoded.text = Utf8FromUtf16Bytes(bytes, decoded.encoding == XmlEncoding::kUtf16BigEndian);
  }
  CheckCharacters(decoded.text);
  return decoded;
}

void XmlDecoder::Append(std::string_view bytes, bool is_last, std::string& text) {
  waiting_ += bytes;
  if (!encoding_) encoding_ = CheckedEncoding(waiting_);
  const std::size_t whole = waiting_.size() - (is_last ? 0 : CutCharacter(waiting_, *encoding_));
  const std::string_view ready = std::string_view(waiting_).substr(0, whole);
  const std::size_t start = text.size();
  if (*encoding_ == XmlEncoding::kUtf8) {
    text += ready;
  } else {
    text += Utf8FromUtf16Bytes(ready, *encoding_ == XmlEncoding::kUtf16BigEndian);
  }
  CheckCharacters(std::string_view(text).substr(start));
  waiting_.erase(0, whole);
}

std::string EncodeXml(std::string text, XmlEncoding encoding) {
  if (encoding == XmlEncoding::kUtf8) return text;
  std::string bytes;
  for (const char16_t unit : Utf16FromUtf8(text)) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes.push_back(encoding == XmlEncoding::kUtf16BigEndian ? high : low);
    bytes.push_back(encoding == XmlEncoding::kUtf16BigEndian ? low : high);
  }
  return bytes;
}

std::optional<std::uint32_t> WholeNumber(std::string_view text, int base) {
  std::uint32_t number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<XmlEntity> EntityAt(std::string_view raw) {
  const std::size_t semicolon = raw.substr(0, 12).find(';');
  if (semicolon == std::string_view::npos) return std::nullopt;
  const std::optional<char32_t> code = EntityCharacter(raw.substr(1, semicolon - 1));
  if (!code) return std::nullopt;
  return XmlEntity{*code, semicolon + 1};
}

void AppendDecoded(std::string_view raw, XmlPlace place, std::string& out) {
  const std::string_view special = place == XmlPlace::kAttribute ? "&\r\n\t" : "&\r";
  while (true) {
    const std::size_t next = raw.find_first_of(special);
    out.append(raw.substr(0, next));
    if (next == std::string_view::npos) return;
    raw.remove_prefix(next);
    const bool may_be_entity = raw.front() == '&' && place != XmlPlace::kLiteral;
    if (const auto entity = may_be_entity ? EntityAt(raw) : std::nullopt) {
      AppendUtf8(entity->code, out);
      raw.remove_prefix(entity->length);
    } else {
      const bool line_end = raw.starts_with("\r\n");
      out.push_back(place == XmlPlace::kAttribute ? ' ' : raw.front() == '\r' ? '\n' : raw.front());
      raw.remove_prefix(line_end ? 2 : 1);
    }
  }
}

std::u16string UnescapeCellText(std::string_view stored) {
  std::u16string text = Utf16FromUtf8(stored);
  const std::size_t escape = text.find(u"_x");
  if (escape == std::u16string::npos) return text;
  std::size_t kept = escape;
  for (std::size_t i = escape; i < text.size(); ++kept) {
    const std::optional<char16_t> unit = EscapedUnit(std::u16string_view(text).substr(i));
    text[kept] = unit ? *unit : text[i];
    i += unit ? std::size_t{7} : std::size_t{1};
  }
  text.resize(kept);
  return text;
}

void AppendCellText(std::u16string_view text, std::string& out) {
  const auto append_escape = [&out](char16_t unit) {
    fmt::format_to(std::back_inserter(out), "_x{:04X}_", static_cast<unsigned>(unit));
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const std::u16string_view rest = text.substr(i);
    const auto [code, units] = zavrel::FirstCharacter(rest);
    if (unit == u'&') {
      out += "&amp;";
    } else if (unit == u'<') {
      out += "&lt;";
    } else if (unit == u'>') {
      out += "&gt;";
    } else if (BeginsUnstorable(rest) || WouldBeginEscape(rest)) {
      append_escape(unit);
    } else {
      AppendUtf8(code, out);
      i += units - 1;
    }
  }
}

bool NeedsSpacePreserved(std::u16string_view text) {
  return text.starts_with(u' ') || text.ends_with(u' ') ||
         text.find_first_of(u"\t\n") != std::u16string_view::npos ||
         text.find(u"  ") != std::u16string_view::npos;
}

}  // namespace zavhost
