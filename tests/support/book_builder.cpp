#include "support/book_builder.h"

#include <zlib.h>

#include <fstream>
#include <random>
#include <stdexcept>

namespace zavhost_test {
namespace fs = std::filesystem;
namespace {

constexpr char kMain[] = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr char kOffice[] = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr char kPackage[] = "http://schemas.openxmlformats.org/package/2006/relationships";
constexpr char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";

std::string Pack(std::string_view content, int flush) {
  z_stream stream{};
  if (deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::runtime_error("zlib");
  }
  std::string packed(deflateBound(&stream, static_cast<uLong>(content.size())) + 64, '\0');
  std::string input(content);
  stream.next_in = reinterpret_cast<Bytef*>(input.data());
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  deflate(&stream, flush);
  packed.resize(packed.size() - stream.avail_out);
  deflateEnd(&stream);
  return packed;
}

void Put16(std::string& out, std::uint32_t value) {
  out += static_cast<char>(value & 0xFF);
  out += static_cast<char>(value >> 8 & 0xFF);
}
void Put32(std::string& out, std::uint32_t value) {
  Put16(out, value & 0xFFFF);
  Put16(out, value >> 16);
}

}  // namespace

std::string Deflate(std::string_view content) { return Pack(content, Z_FINISH); }

std::string DeflateBlanks(std::size_t megabytes) {
  const std::string megabyte = Pack(std::string(1 << 20, ' '), Z_FULL_FLUSH);
  std::string packed;
  for (std::size_t i = 0; i < megabytes; ++i) packed += megabyte;
  return packed + Pack("", Z_FINISH);
}

std::string Zip(const std::vector<ZipPart>& parts) {
  std::string archive;
  std::string directory;
  for (const ZipPart& part : parts) {
    const bool as_is = part.stored || part.is_packed;
    const std::string data = as_is ? part.content : Deflate(part.content);
    const auto checksum =
        static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(part.content.data()),
                                         static_cast<uInt>(part.content.size())));
    std::string header;
    Put16(header, 20);
    Put16(header, part.flags);
    Put16(header, part.method.value_or(part.stored ? 0 : 8));
    Put32(header, 0x58210000);  // 1 January 2024
    Put32(header, part.checksum.value_or(checksum));
    Put32(header, static_cast<std::uint32_t>(data.size()));
    Put32(header, part.declared_size.value_or(static_cast<std::uint32_t>(part.content.size())));
    Put16(header, static_cast<std::uint32_t>(part.name.size()));
    Put16(header, 0);
    const auto offset = static_cast<std::uint32_t>(archive.size());
    archive += "PK\3\4" + header + part.name + data;
    directory += std::string("PK\1\2\24\0", 6) + header + std::string(10, '\0');
    Put32(directory, offset);
    directory += part.name;
  }
  std::string end = std::string("PK\5\6\0\0\0\0", 8);
  Put16(end, static_cast<std::uint32_t>(parts.size()));
  Put16(end, static_cast<std::uint32_t>(parts.size()));
  Put32(end, static_cast<std::uint32_t>(directory.size()));
  Put32(end, static_cast<std::uint32_t>(archive.size()));
  Put16(end, 0);
  return archive + directory + end;
}

std::string RelationshipXml(const std::string& id, const std::string& type,
                            const std::string& target, const std::string& rest) {
  return R"(<Relationship Id=")" + id + R"(" Type=")" + kOffice + "/" + type + R"(" Target=")" +
         target + R"(" )" + rest + "/>";
}

std::string RelationshipsXml(const std::string& relationships) {
  return std::string(kDeclaration) + R"(<Relationships xmlns=")" + kPackage + R"(">)" +
         relationships + "</Relationships>";
}

std::string WorkbookXml(const std::string& sheets, const std::string& rest) {
  return std::string(kDeclaration) + R"(<workbook xmlns=")" + kMain + R"(" xmlns:r=")" + kOffice +
         R"("><sheets>)" + sheets + "</sheets>" + rest + "</workbook>";
}

std::string SheetXml(const std::string& rows, const std::string& behind) {
  return std::string(kDeclaration) + R"(<worksheet xmlns=")" + kMain + R"("><sheetData>)" + rows +
         "</sheetData>" + behind + "</worksheet>";
}

BookParts OneSheetBook(const std::string& rows) {
  return {
      {"[Content_Types].xml",
       std::string(kDeclaration) +
           "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
           "<Default Extension=\"rels\" "
           "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
           "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
           "<Override PartName=\"/xl/workbook.xml\" ContentType=\"application/"
           "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>"
           "<Override PartName=\"/xl/worksheets/sheet1.xml\" ContentType=\"application/"
           "vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml\"/></Types>"},
      {"_rels/.rels",
       RelationshipsXml(RelationshipXml("rId1", "officeDocument", "xl/workbook.xml"))},
      {"xl/workbook.xml", WorkbookXml(R"(<sheet name="Data" sheetId="1" r:id="rId1"/>)")},
      {"xl/_rels/workbook.xml.rels",
       RelationshipsXml(RelationshipXml("rId1", "worksheet", "worksheets/sheet1.xml"))},
      {"xl/worksheets/sheet1.xml", SheetXml(rows)},
  };
}

std::string ZipBook(const BookParts& parts) {
  std::vector<ZipPart> list;
  for (const auto& [name, content] : parts) list.push_back({.name = name, .content = content});
  return Zip(list);
}

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  path_ = fs::temp_directory_path() / ("zavhost-test-" + std::to_string(random()));
  fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

fs::path TemporaryFolder::Put(const std::u16string& name, const std::string& bytes) const {
  fs::path file = path_ / fs::path(name);
  std::ofstream(file, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return file;
}

}  // namespace zavhost_test
