#include "host/xlsx/package.h"

#include <fmt/format.h>

#include <set>
#include <unordered_map>
#include <utility>

#include "host/workbook/text.h"
#include "host/xlsx/messages.h"

namespace zavhost {
namespace {

std::string_view Folder(std::string_view part) { return part.substr(0, part.rfind('/') + 1); }

/// The part that a target names, relative to the folder of the part with the relationship.
std::string ResolveTarget(std::string_view folder, std::string_view target) {
  if (target.starts_with('/')) folder = {};
  std::vector<std::string_view> components;
  const auto add = [&](std::string_view path) {
    while (!path.empty()) {
      const std::size_t slash = std::min(path.find('/'), path.size());
      const std::string_view component = path.substr(0, slash);
      path.remove_prefix(std::min(slash + 1, path.size()));
      if (component == "..") {
        if (components.empty()) {
          throw WorkbookError(
              fmt::format("a relationship leads outside the workbook: '{}'", Printable(target)));
        }
        components.pop_back();
      } else if (!component.empty() && component != ".") {
        components.push_back(component);
      }
    }
  };
  add(folder);
  add(target);
  return fmt::format("{}", fmt::join(components, "/"));
}

std::string FindWorkbookPart(ZipArchive& archive) {
  if (!archive.Has("_rels/.rels")) {
    throw WorkbookError(archive.Has("content.xml")
                            ? "this is an OpenDocument file; save it as .xlsx"
                            : "this is a zip archive, but not an Excel workbook (.xlsx)");
  }
  for (const auto& [id, relationship] : ReadRelationships(archive, "")) {
    if (relationship.type != "officeDocument" || relationship.part.empty()) continue;
    if (relationship.part.ends_with(".bin")) {
      throw WorkbookError("this is a binary workbook (.xlsb); save it as .xlsx");
    }
    return relationship.part;
  }
  throw WorkbookError("no part is named as the workbook");
}

/// Reads the workbook part, event by event.
class WorkbookPartReader {
 public:
  WorkbookPartReader(std::string_view xml, Relationships relationships, const XlsxLimits& limits)
      : reader_(xml), relationships_(std::move(relationships)), limits_(limits) {}

  WorkbookParts Read() {
    reader_.Next();
    if (reader_.name() != "workbook")
      throw WorkbookError("this is not an Excel workbook (.xlsx), but another kind of document");
    while (reader_.NextStart()) ReadElement();
    if (parts_.sheets.empty()) throw WorkbookError("the workbook has no sheets");
    CheckNames();
    for (const auto& [id, relationship] : relationships_) {
      if (relationship.part.empty()) continue;
      if (relationship.type == "sharedStrings") parts_.shared_strings = relationship.part;
      if (relationship.type == "sheetMetadata") parts_.metadata = relationship.part;
      if (relationship.type == "calcChain") parts_.calculation_chain = relationship.part;
    }
    return std::move(parts_);
  }

 private:
  void ReadElement() {
    const std::string_view name = reader_.name();
    if (name == "workbookPr") {
      parts_.date1904 = reader_.BooleanAttribute("date1904");
    } else if (name == "sheet" && reader_.depth() == 3) {
      ReadSheet();
    } else if (name == "definedName") {
      ReadName();
    }
  }

  void ReadSheet() {
    SheetPart sheet{Utf16FromUtf8(reader_.Attribute("name").value_or("")), {}};
    const std::string shown = Printable(sheet.name);
    if (sheet.name.empty()) throw WorkbookError("a sheet has no name");
    if (!sheet_names_.insert(LowerCase(sheet.name)).second) {
      throw WorkbookError(fmt::format("two sheets are named '{}'", shown));
    }
    if (sheet_names_.size() > limits_.parts)
      throw WorkbookError(fmt::format("it has more than {} sheets", limits_.parts));
    const auto found = relationships_.find(reader_.PrefixedAttribute("id").value_or(""));
    if (found == relationships_.end() || found->second.part.empty()) {
      throw WorkbookError(fmt::format("no part is named for sheet '{}'", shown));
    }
    if (found->second.type == "worksheet") {
      sheet.part = found->second.part;
      if (!sheet_parts_.insert(sheet.part).second) {
        throw WorkbookError(fmt::format("sheet '{}' shares its part with another sheet", shown));
      }
    }
    parts_.sheets.push_back(std::move(sheet));
  }

  void ReadName() {
    DefinedName name;
    name.name = Utf16FromUtf8(reader_.Attribute("name").value_or(""));
    name.sheet = reader_.NumberAttribute("localSheetId");
    // Not names of macros, nor Excel's own names for print areas, filters and similar things. A
    // hidden name counts: only the list of names does not show it.
    const bool is_ours = !reader_.BooleanAttribute("function") &&
                         !reader_.BooleanAttribute("vbProcedure") &&
                         !name.name.starts_with(u"_xlnm.");
    std::string text;
    reader_.ReadText(text);
    name.text = Utf16FromUtf8(text);
    if (name.text.starts_with(u'=')) name.text.erase(0, 1);
    if (is_ours) parts_.names.push_back(std::move(name));
  }

  void CheckNames() const {
    std::set<std::pair<std::u16string, std::optional<std::uint32_t>>> seen;
    for (const DefinedName& name : parts_.names) {
      if (name.sheet && *name.sheet >= parts_.sheets.size()) {
        throw WorkbookError(fmt::format("the name '{}' belongs to a sheet that does not exist",
                                        Printable(name.name)));
      }
      if (!seen.emplace(LowerCase(name.name), name.sheet).second) {
        throw WorkbookError(fmt::format("the name '{}' is defined twice", Printable(name.name)));
      }
    }
  }

  XmlReader reader_;
  Relationships relationships_;
  const XlsxLimits& limits_;
  WorkbookParts parts_;
  std::set<std::u16string> sheet_names_;
  std::set<std::string> sheet_parts_;
};

}  // namespace

DecodedXml ReadXmlPart(ZipArchive& archive, std::string_view part, std::uint64_t limit) {
  return NamingPart(part, [&] { return DecodeXml(archive.Read(part, limit)); });
}

DecodedXml ReadListPart(ZipArchive& archive, std::string_view part) {
  return ReadXmlPart(archive, part, archive.limits().list_bytes);
}

XmlWindow OpenXmlPart(ZipArchive& archive, std::string_view part) {
  return XmlWindow([append_piece = archive.Open(part, archive.limits().part_bytes),
                    decoder = XmlDecoder(), bytes = std::string()](std::string& text) mutable {
    bytes.clear();
    const bool has_more = append_piece(bytes);
    decoder.Append(bytes, !has_more, text);
    return has_more;
  });
}

WorkbookError DamagedPart(std::string_view part, const XmlError& error) {
  return WorkbookError(fmt::format("part '{}' is damaged: {}", Printable(part), error.what()));
}

std::string RelationshipsPart(std::string_view of_part) {
  const std::string_view folder = Folder(of_part);
  return fmt::format("{}_rels/{}.rels", folder, of_part.substr(folder.size()));
}

Relationships ReadRelationships(ZipArchive& archive, std::string_view of_part) {
  const std::string part = RelationshipsPart(of_part);
  Relationships relationships;
  if (!archive.Has(part)) return relationships;
  const DecodedXml xml = ReadListPart(archive, part);
  return NamingPart(part, [&] {
    XmlReader reader(xml.text);
    while (reader.NextStart()) {
      if (reader.name() != "Relationship") continue;
      const std::string type = reader.Attribute("Type").value_or("");
      Relationship relationship{type.substr(type.rfind('/') + 1), {}};
      if (reader.Attribute("TargetMode") != "External") {
        relationship.part = ResolveTarget(Folder(of_part), reader.Attribute("Target").value_or(""));
      }
      relationships.emplace(reader.Attribute("Id").value_or(""), std::move(relationship));
    }
    return relationships;
  });
}

std::vector<std::string> PartsOfType(ZipArchive& archive, std::string_view ending) {
  std::vector<std::string> found;
  if (!archive.Has(kContentTypesPart)) return found;
  const DecodedXml xml = ReadListPart(archive, kContentTypesPart);
  return NamingPart(kContentTypesPart, [&] {
    XmlReader reader(xml.text);
    while (reader.NextStart()) {
      if (reader.name() != "Override") continue;
      if (!reader.Attribute("ContentType").value_or("").ends_with(ending)) continue;
      found.push_back(ResolveTarget({}, reader.Attribute("PartName").value_or("")));
    }
    return found;
  });
}

WorkbookParts ReadWorkbookParts(ZipArchive& archive) {
  const std::string part = FindWorkbookPart(archive);
  const DecodedXml xml = ReadListPart(archive, part);
  if (const std::string missing = RelationshipsPart(part); !archive.Has(missing))
    throw WorkbookError(fmt::format("part '{}' is missing", Printable(missing)));
  Relationships relationships = ReadRelationships(archive, part);
  WorkbookParts parts = NamingPart(part, [&] {
    return WorkbookPartReader(xml.text, std::move(relationships), archive.limits()).Read();
  });
  parts.workbook = part;
  return parts;
}

}  // namespace zavhost
