#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/xlsx/xml_reader.h"
#include "host/xlsx/xml_text.h"

using namespace zavhost;

namespace {

/// What a reader sees.
std::vector<std::string> EventsOf(XmlReader& reader) {
  std::vector<std::string> events;
  for (auto event = reader.Next(); event != XmlReader::Event::kDone; event = reader.Next()) {
    std::string line = std::to_string(reader.depth()) + " ";
    if (event == XmlReader::Event::kText) {
      reader.AppendText(line);
    } else {
      line += (event == XmlReader::Event::kEnd ? "/" : "") + std::string(reader.qualified_name());
      for (const XmlAttribute& attribute : reader.attributes())
        line += " " + std::string(attribute.raw);
    }
    events.push_back(std::move(line));
  }
  return events;
}

/// A window on a document that comes in pieces of a size.
XmlWindow Pieces(std::string_view bytes, std::size_t size) {
  return XmlWindow([bytes, size, decoder = XmlDecoder()](std::string& text) mutable {
    const std::string_view piece = bytes.substr(0, size);
    bytes.remove_prefix(piece.size());
    decoder.Append(piece, bytes.empty(), text);
    return !bytes.empty();
  });
}

}  // namespace

TEST_CASE("a part that comes in pieces reads as the whole part does, wherever it is cut") {
  const std::string xml =
      "\xEF\xBB\xBF<?xml version=\"1.0\"?><x:a b=\"&lt;\xC3\xA4\"><!-- - --><c>\xE2\x82\xAC &amp; "
      "\xF0\x9F\x98\x80</c><d/><![CDATA[<\xF4\x8F\xBF\xBF>]]></x:a>";
  for (const XmlEncoding encoding :
       {XmlEncoding::kUtf8, XmlEncoding::kUtf16LittleEndian, XmlEncoding::kUtf16BigEndian}) {
    const std::string bytes = EncodeXml(xml, encoding);
    const std::string whole = DecodeXml(bytes).text;
    for (std::size_t cut = 60; cut < bytes.size(); ++cut) {
      for (const std::size_t size : {std::size_t{1}, std::size_t{2}, bytes.size()}) {
        XmlDecoder decoder;
        std::string text;
        decoder.Append(std::string_view(bytes).substr(0, cut), false, text);
        for (std::size_t at = cut; at < bytes.size(); at += size)
          decoder.Append(std::string_view(bytes).substr(at, size), at + size >= bytes.size(), text);
        CHECK(text == whole);
      }
    }
  }
  XmlDecoder decoder;
  std::string text;
  decoder.Append("<a>\xE2\x82", false, text);
  CHECK_THROWS_AS(decoder.Append("</a>", true, text), XmlError);
}

TEST_CASE("a part of many windows reads as the whole part does") {
  std::string xml = "<sheet><row>";
  for (int i = 0; xml.size() < 5 * XmlWindow::kLongestMarkup; ++i) {
    xml += "<c r=\"" + std::to_string(i) + "\"><v>\xC3\xA4" +
           std::string(static_cast<std::size_t>(i % 977), 'x') + "</v></c>";
    if (i % 100 == 99) xml += "</row><row>";
  }
  xml += "</row></sheet>";
  XmlReader whole(xml);
  const std::vector<std::string> expected = EventsOf(whole);
  for (const std::size_t size : {std::size_t{1009}, std::size_t{262'144}, xml.size()}) {
    XmlWindow window = Pieces(xml, size);
    XmlReader reader(window);
    CHECK(EventsOf(reader) == expected);
  }
}

TEST_CASE("markup that is longer than a window can hold is refused, and where it stands") {
  const std::string much(2 * XmlWindow::kLongestMarkup + 10, 'x');
  for (const std::string& markup :
       {much, "<!--" + much + "-->", "<" + much + "/>", "<a b='" + much + "'/>"}) {
    std::string before = "<sheet>";
    while (before.size() < 3 * XmlWindow::kLongestMarkup) before += "<row/>";
    const std::string xml = before + markup + "</sheet>";
    XmlWindow window = Pieces(xml, 300'000);
    XmlReader reader(window);
    std::string message;
    try {
      EventsOf(reader);
    } catch (const XmlError& error) {
      message = error.what();
    }
    CHECK(message.find("of more than 1 MB") != std::string::npos);
    CHECK(message.find(std::to_string(before.size()) + ")") != std::string::npos);
  }
}
