#include "host/automation/stored_state.h"

#include <fmt/format.h>

#include <charconv>

#include "host/xlsx/package.h"

namespace zavhost {
namespace {

using Event = XmlReader::Event;

/// The attributes of sheetProtection for the permissions; "0" permits.
constexpr const char* kPermissionAttributes[kPermissionCount] = {
    "formatCells", "formatColumns",    "formatRows",    "insertColumns",
    "insertRows",  "insertHyperlinks", "deleteColumns", "deleteRows",
    "sort",        "autoFilter",       "pivotTables"};

std::string PasswordText(const char* name, std::uint16_t password) {
  return password == 0 ? "" : fmt::format(" {}=\"{:04X}\"", name, password);
}

std::uint16_t PasswordIn(const XmlReader& reader, std::string_view name) {
  const std::string text = reader.Attribute(name).value_or("");
  std::uint16_t password = 0;
  std::from_chars(text.data(), text.data() + text.size(), password, 16);
  return password;
}

std::string ProtectionElement(const SheetProtection& protection) {
  std::string text = "<sheetProtection" + PasswordText("password", protection.password);
  if (protection.of_contents) text += " sheet=\"1\"";
  if (protection.of_drawing_objects) text += " objects=\"1\"";
  if (protection.of_scenarios) text += " scenarios=\"1\"";
  for (std::size_t i = 0; i < kPermissionCount; ++i) {
    if (protection.permissions[i]) text += fmt::format(" {}=\"0\"", kPermissionAttributes[i]);
  }
  return text + "/>";
}

/// Puts a text behind the first element with this end in a part.
void InsertBehind(std::string& xml, std::initializer_list<std::string_view> ends,
                  const std::string& text) {
  for (const std::string_view end : ends) {
    if (const std::size_t place = xml.find(end); place != std::string::npos) {
      xml.insert(place + end.size(), text);
      return;
    }
  }
  throw WorkbookError("the written file has not the expected parts");
}

void StoreProtection(ZipArchive& archive, const std::string& part, const SheetState& sheet) {
  if (!sheet.protection.IsAny()) return;
  std::string xml = archive.Read(part);
  InsertBehind(xml, {"</sheetData>", "<sheetData/>"}, ProtectionElement(sheet.protection));
  archive.Replace(part, std::move(xml));
}

/// The workbook part with changes at the start of some of its elements.
std::string ChangedWorkbook(const std::string& xml, const Book& book) {
  std::string changed;
  std::size_t copied = 0, sheet = 0;
  const auto insert = [&](std::size_t place, const std::string& text) {
    changed.append(xml, copied, place - copied);
    changed += text;
    copied = place;
  };
  XmlReader reader(xml);
  for (Event event = reader.Next(); event != Event::kDone; event = reader.Next()) {
    if (event != Event::kStart) continue;
    const std::size_t behind_name = reader.begin() + 1 + reader.qualified_name().size();
    if (reader.name() == "sheet" && sheet < book.sheets().size()) {
      if (book.sheets()[sheet++]->visibility != kSheetVeryHidden) continue;
      const std::string_view hidden = " state=\"hidden\"";
      const std::size_t place = xml.find(hidden, behind_name);
      insert(place, " state=\"veryHidden\"");
      copied = place + hidden.size();
    } else if (reader.name() == "definedName") {
      const std::u16string name = Utf16FromUtf8(reader.Attribute("name").value_or(""));
      const auto local = reader.NumberAttribute("localSheetId");
      for (const auto& known : book.names()) {
        const SheetPtr of = local ? book.sheets().at(*local) : nullptr;
        if (!known->is_visible && known->name == name && known->sheet == of)
          insert(behind_name, " hidden=\"1\"");
      }
    } else if (reader.name() == "workbookPr" && book.is_structure_protected) {
      insert(reader.end(), "<workbookProtection" +
                               PasswordText("workbookPassword", book.structure_password) +
                               " lockStructure=\"1\"/>");
    }
  }
  return changed.append(xml, copied);
}

void ReadProtection(const std::string& xml, SheetProtection& protection) {
  XmlReader reader(xml);
  for (Event event = reader.Next(); event != Event::kDone; event = reader.Next()) {
    if (event != Event::kStart || reader.name() != "sheetProtection") continue;
    protection.of_contents = reader.BooleanAttribute("sheet");
    protection.of_drawing_objects = reader.BooleanAttribute("objects");
    protection.of_scenarios = reader.BooleanAttribute("scenarios");
    protection.password = PasswordIn(reader, "password");
    for (std::size_t i = 0; i < kPermissionCount; ++i)
      protection.permissions[i] = reader.Attribute(kPermissionAttributes[i]) == "0";
    return;
  }
}

void ReadWorkbookState(const std::string& xml, Book& book) {
  std::size_t sheet = 0, name = 0;
  XmlReader reader(xml);
  for (Event event = reader.Next(); event != Event::kDone; event = reader.Next()) {
    if (event != Event::kStart) continue;
    if (reader.name() == "sheet" && sheet < book.sheets().size()) {
      const std::string state = reader.Attribute("state").value_or("visible");
      book.sheets()[sheet++]->visibility = state == "hidden"       ? kSheetHidden
                                           : state == "veryHidden" ? kSheetVeryHidden
                                                                   : kSheetVisible;
    } else if (reader.name() == "definedName" && name < book.names().size()) {
      NameState& known = *book.names()[name];
      if (known.name != Utf16FromUtf8(reader.Attribute("name").value_or(""))) continue;
      known.is_visible = !reader.BooleanAttribute("hidden");
      ++name;
    } else if (reader.name() == "workbookProtection") {
      book.is_structure_protected = reader.BooleanAttribute("lockStructure");
      book.structure_password = PasswordIn(reader, "workbookPassword");
    } else if (reader.name() == "workbookView") {
      const std::uint32_t active = reader.NumberAttribute("activeTab").value_or(0);
      if (active < book.sheets().size()) book.active = book.sheets()[active];
    }
  }
}

}  // namespace

std::string WithState(const std::string& bytes, const Book& book) {
  ZipArchive archive(bytes, {});
  const WorkbookParts parts = ReadWorkbookParts(archive);
  for (std::size_t i = 0; i < parts.sheets.size() && i < book.sheets().size(); ++i)
    StoreProtection(archive, parts.sheets[i].part, *book.sheets()[i]);
  archive.Replace(parts.workbook, ChangedWorkbook(archive.Read(parts.workbook), book));
  return archive.Finish();
}

void ReadState(const std::string& bytes, Book& book) {
  ZipArchive archive(bytes, {});
  const WorkbookParts parts = ReadWorkbookParts(archive);
  for (std::size_t i = 0; i < parts.sheets.size() && i < book.sheets().size(); ++i) {
    if (parts.sheets[i].part.empty()) continue;
    // The sheet itself was read from the same file and found to be within its limits.
    const DecodedXml sheet = ReadXmlPart(archive, parts.sheets[i].part, UINT64_MAX);
    ReadProtection(sheet.text, book.sheets()[i]->protection);
  }
  ReadWorkbookState(ReadListPart(archive, parts.workbook).text, book);
}

}  // namespace zavhost
