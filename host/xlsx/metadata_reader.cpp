#include "host/xlsx/metadata_reader.h"

#include <cstdint>
#include <optional>

#include "host/xlsx/xml_reader.h"

namespace zavhost {

std::vector<bool> ReadDynamicArrayMarks(std::string_view xml) {
  std::vector<bool> marks(1);
  std::uint32_t types = 0;
  std::optional<std::uint32_t> dynamic_type;  // counted from 1
  XmlReader reader(xml);
  reader.Next();
  for (auto event = reader.Next(); event != XmlReader::Event::kDone; event = reader.Next()) {
    if (event != XmlReader::Event::kStart) continue;
    if (reader.name() == "metadataType") {
      ++types;
      if (reader.Attribute("name") == "XLDAPR") dynamic_type = types;
    } else if (reader.name() == "cellMetadata") {
      reader.ForEachChild("bk", [&] {
        bool is_dynamic = false;
        reader.ForEachChild("rc", [&] {
          is_dynamic = is_dynamic || (dynamic_type && reader.NumberAttribute("t") == dynamic_type);
          reader.SkipElement();
        });
        marks.push_back(is_dynamic);
      });
    }
  }
  return marks;
}

}  // namespace zavhost
