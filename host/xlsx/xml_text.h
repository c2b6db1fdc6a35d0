#pragma once
// The text of XML parts: encodings, entities, and the escapes that workbooks use for characters
// that XML cannot hold.

#include <string>
#include <string_view>

namespace zavhost {

/// How a part's bytes are to be written again.
enum class XmlEncoding { kUtf8, kUtf16LittleEndian, kUtf16BigEndian };

struct DecodedXml {
  std::string text;  // UTF-8; a byte-order mark is kept
  XmlEncoding encoding = XmlEncoding::kUtf8;
};

/// A part's text in UTF-8. Throws XmlError for other encodings than UTF-8 and UTF-16, for bytes
/// that are not valid in theirs, and for control characters.
DecodedXml DecodeXml(std::string bytes);
/// The reverse of DecodeXml.
std::string EncodeXml(std::string text, XmlEncoding encoding);

enum class XmlPlace { kText, kAttribute, kLiteral };

/// Appends raw XML text with its entities resolved and its line ends made "\n", as XML asks. False
/// for an entity other than XML's own five and character references.
bool AppendDecoded(std::string_view raw, XmlPlace place, std::string& out);

/// Cell text as stored: _xHHHH_ stands for the UTF-16 code unit HHHH.
std::u16string UnescapeCellText(std::string_view stored);
/// Appends cell text as XML text: markup escaped, and _xHHHH_ for what XML cannot hold and for text
/// that would look like such an escape.
void AppendCellText(std::u16string_view text, std::string& out);

/// True when XML would not keep the text's white space without being asked to.
bool NeedsSpacePreserved(std::u16string_view text);

}  // namespace zavhost
