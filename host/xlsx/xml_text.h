#pragma once
// The text of XML parts: encodings, entities, and the escapes that workbooks use for characters
// that XML does not allow.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zavhost {

/// The encoding in which a part must be written again.
enum class XmlEncoding { kUtf8, kUtf16LittleEndian, kUtf16BigEndian };

struct DecodedXml {
  std::string text;  // UTF-8; a byte-order mark is kept
  XmlEncoding encoding = XmlEncoding::kUtf8;
};

/// A part's text in UTF-8. Throws XmlError for encodings other than UTF-8 and UTF-16, for invalid
/// bytes and for control characters.
DecodedXml DecodeXml(std::string bytes);
/// The same for a part that comes piece by piece.
class XmlDecoder {
 public:
  /// Appends to `text` what the bytes after the ones before stand for. The rest of a character that
  /// is cut waits for the next piece, if there is one.
  void Append(std::string_view bytes, bool is_last, std::string& text);

 private:
  std::optional<XmlEncoding> encoding_;
  std::string waiting_;
};
/// The reverse of DecodeXml.
std::string EncodeXml(std::string text, XmlEncoding encoding);

/// The number that a text consists of, in digits and nothing else; nothing for other texts.
std::optional<std::uint32_t> WholeNumber(std::string_view text, int base = 10);

struct XmlEntity {
  char32_t code;
  std::size_t length;
};
/// The entity that begins with the "&" at the start of raw XML text, if XML defines it.
std::optional<XmlEntity> EntityAt(std::string_view raw);

enum class XmlPlace { kText, kAttribute, kLiteral };

/// Appends raw XML text, with resolved entities and line ends converted to "\n" as XML requires. An
/// "&" that begins no entity that XML defines stands for itself.
void AppendDecoded(std::string_view raw, XmlPlace place, std::string& out);

/// Decodes stored cell text: _xHHHH_ is the UTF-16 code unit HHHH.
std::u16string UnescapeCellText(std::string_view stored);
/// Appends cell text as XML text: escapes markup, and uses _xHHHH_ for characters that XML does not
/// allow and for text that would look like such an escape.
void AppendCellText(std::u16string_view text, std::string& out);

/// True if XML would keep the text's white space only with xml:space="preserve".
bool NeedsSpacePreserved(std::u16string_view text);

}  // namespace zavhost
