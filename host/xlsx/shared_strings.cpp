#include "host/xlsx/shared_strings.h"

#include <fmt/format.h>

#include "host/workbook/workbook.h"
#include "host/xlsx/xml_text.h"

namespace zavhost {
namespace {

bool IsSpace(char c) { return c == ' ' || c == '\n' || c == '\t'; }

/// At the start of a t element: appends its text, without white space at its ends unless this is
/// preserved.
void AppendRun(XmlReader& reader, std::string& text) {
  const XmlAttribute* space = reader.FindAttribute("xml:space");
  const bool preserved = space != nullptr && space->raw == "preserve";
  const std::size_t start = text.size();
  reader.ReadText(text);
  if (preserved) return;
  while (text.size() > start && IsSpace(text.back())) text.pop_back();
  std::size_t first = start;
  while (first < text.size() && IsSpace(text[first])) ++first;
  text.erase(start, first - start);
}

}  // namespace

std::u16string ReadRichText(XmlReader& reader, std::string& scratch) {
  scratch.clear();
  const std::size_t level = reader.depth();
  while (true) {
    const XmlReader::Event event = reader.Next();
    if (event == XmlReader::Event::kEnd && reader.depth() == level) break;
    if (event != XmlReader::Event::kStart) continue;
    if (reader.name() == "t") {
      AppendRun(reader, scratch);
    } else if (reader.name() != "r") {
      reader.SkipElement();
    }
  }
  return UnescapeCellText(scratch);
}

std::vector<Text> ReadSharedStrings(XmlReader& reader, std::uint64_t limit, KeptBytes& kept) {
  std::vector<Text> strings;
  const Text empty = Text(u"");
  std::string scratch;
  if (reader.Next() != XmlReader::Event::kStart || reader.name() != "sst") {
    throw XmlError("it is not a table of shared texts");
  }
  for (XmlReader::Event event = reader.Next(); event != XmlReader::Event::kDone;
       event = reader.Next()) {
    if (event != XmlReader::Event::kStart) continue;
    if (reader.name() != "si") {
      reader.SkipElement();
      continue;
    }
    if (strings.size() >= limit) {
      throw WorkbookError(fmt::format("it holds more than {} shared texts", limit));
    }
    std::u16string text = ReadRichText(reader, scratch);
    kept.Take(sizeof(Text) + BytesOf(text));
    strings.push_back(text.empty() ? empty : Text(std::move(text)));
  }
  return strings;
}

}  // namespace zavhost
