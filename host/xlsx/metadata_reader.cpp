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
  while (reader.NextStart()) {
    if (reader.name() == "metadataType") {
      ++types;
      if (reader.Attribute("name") == "XLDAPR") dynamic_type = types;
    } else if (reader.name() == "cellMetadata") {
      reader.ForEachChild("bk", [&] {
        bool is_dynamic = false;
        reader.ForEachChild("rc", [&] {
          if (dynamic_type && reader.NumberAttribute("t") == dynamic_type) is_dynamic = true;
          reader.SkipElement();
        });
        marks.push_back(is_dynamic);
      });
    }
  }
  return marks;
}

}  // namespace zavhost
