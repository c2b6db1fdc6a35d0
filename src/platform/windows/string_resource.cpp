#include "platform/string_resource.h"

#include <string_view>

#include "platform/windows/wide.h"

namespace zavrel {
namespace {

constexpr std::uint16_t kTextsInABlock = 16;

HMODULE HandleOf(void* library) { return static_cast<HMODULE>(library); }

LPWSTR BlockNumber(std::uint16_t id) {
  return MAKEINTRESOURCEW(static_cast<WORD>(id / kTextsInABlock + 1));
}

BOOL CALLBACK AddLanguage(HMODULE, LPCWSTR, LPCWSTR, WORD language, LONG_PTR languages) {
  reinterpret_cast<std::vector<std::uint16_t>*>(languages)->push_back(language);
  return TRUE;
}

// The code units of the block of 16 texts with this id; empty if there is none.
std::wstring_view BlockOf(HMODULE library, WORD language, std::uint16_t id) {
  const HRSRC place = FindResourceExW(library, RT_STRING, BlockNumber(id), language);
  const HGLOBAL block = place == nullptr ? nullptr : LoadResource(library, place);
  const void* units = block == nullptr ? nullptr : LockResource(block);
  if (units == nullptr) return {};
  return {static_cast<const wchar_t*>(units), SizeofResource(library, place) / sizeof(wchar_t)};
}

}  // namespace

std::optional<StringResources> StringResources::Load(const std::filesystem::path& full_path) {
  if (!full_path.is_absolute()) return std::nullopt;
  std::filesystem::path native = full_path;
  native.make_preferred();
  const HMODULE library = LoadLibraryExW(native.c_str(), nullptr,
                                         LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
  if (library == nullptr) return std::nullopt;
  return StringResources(library);
}

StringResources::~StringResources() {
  if (library_ != nullptr) FreeLibrary(HandleOf(library_));
}

std::optional<std::u16string> StringResources::Find(std::uint16_t language,
                                                    std::uint16_t id) const {
  std::wstring_view block = BlockOf(HandleOf(library_), language, id);
  // Each text follows its length; the table may be truncated.
  for (int before = id % kTextsInABlock; !block.empty(); --before) {
    const std::size_t length = block.front();
    block.remove_prefix(1);
    if (length > block.size()) return std::nullopt;
    if (before == 0) {
      if (length == 0) return std::nullopt;
      return FromWide(block.substr(0, length));
    }
    block.remove_prefix(length);
  }
  return std::nullopt;
}

std::vector<std::uint16_t> StringResources::LanguagesOf(std::uint16_t id) const {
  std::vector<std::uint16_t> languages;
  EnumResourceLanguagesW(HandleOf(library_), RT_STRING, BlockNumber(id), AddLanguage,
                         reinterpret_cast<LONG_PTR>(&languages));
  return languages;
}

}  // namespace zavrel
