#include "host/xlsx/shared_strings.h"

#include <algorithm>
#include <string_view>

#include "host/workbook/workbook.h"
#include "host/xlsx/xml_text.h"

namespace zavhost {
namespace {

constexpr std::string_view kSpace = " \n\t";

/// At the start of a t element: appends its text, without white space at its ends unless this is
/// preserved.
void AppendRun(XmlReader& reader, std::string& text) {
  const XmlAttribute* space = reader.FindAttribute("xml:space");
  const bool preserved = space != nullptr && space->raw == "preserve";
  const std::size_t start = text.size();
  reader.ReadText(text);
  if (preserved) return;
  const std::size_t first = std::min(text.find_first_not_of(kSpace, start), text.size());
  text.erase(std::max(text.find_last_not_of(kSpace) + 1, first));
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

std::vector<Text> ReadSharedStrings(XmlReader& reader, KeptBytes& kept) {
  std::vector<Text> strings;
  const Text empty = Text(u"");
  std::string scratch;
  reader.Next();
  if (reader.name() != "sst") throw XmlError("it is not a table of shared texts");
  while (reader.NextStart()) {
    if (reader.name() != "si") {
      reader.SkipElement();
      continue;
    }
    std::u16string text = ReadRichText(reader, scratch);
    kept.Take(sizeof(Text) + BytesOf(text));
    strings.push_back(text.empty() ? empty : Text(std::move(text)));
  }
  return strings;
}

}  // namespace zavhost
