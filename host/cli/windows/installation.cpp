#include <windows.h>

#include <algorithm>
#include <array>

#include "host/cli/installation.h"
#include "host/workbook/value.h"

namespace zavhost {
namespace {

/// Owner of a file that is open as data.
class DataFile {
 public:
  explicit DataFile(const std::filesystem::path& file)
      : handle_(LoadLibraryExW(file.c_str(), nullptr,
                               LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE)) {}
  ~DataFile() {
    if (handle_ != nullptr) FreeLibrary(handle_);
  }
  DataFile(const DataFile&) = delete;
  DataFile& operator=(const DataFile&) = delete;
  HMODULE get() const { return handle_; }

 private:
  HMODULE handle_;
};

/// Owner of a key that is open for reading; null when it is not there.
class Key {
 public:
  Key(HKEY hive, const std::wstring& path) {
    if (RegOpenKeyExW(hive, path.c_str(), 0, KEY_READ | KEY_WOW64_64KEY, &key_) != ERROR_SUCCESS)
      key_ = nullptr;
  }
  ~Key() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

std::string Utf8(const std::wstring& text) {
  return Utf8FromUtf16({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}

struct RegistryText {
  std::wstring name;
  std::wstring text;
};

/// The text values of a key.
std::vector<RegistryText> TextValues(const Key& key) {
  std::vector<RegistryText> values;
  constexpr DWORD kNameLimit = 16384;
  std::wstring name(kNameLimit, L'\0');
  std::vector<wchar_t> text(kNameLimit);
  for (DWORD index = 0; key.get() != nullptr; ++index) {
    DWORD name_size = kNameLimit;
    DWORD bytes = static_cast<DWORD>((text.size() - 1) * sizeof(wchar_t));
    DWORD type = 0;
    const LSTATUS status = RegEnumValueW(key.get(), index, name.data(), &name_size, nullptr, &type,
                                         reinterpret_cast<BYTE*>(text.data()), &bytes);
    if (status == ERROR_NO_MORE_ITEMS) break;
    if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) continue;
    text[bytes / sizeof(wchar_t)] = L'\0';
    values.push_back({name.substr(0, name_size), text.data()});
  }
  return values;
}

std::string ValueOf(HKEY hive, const std::wstring& path, const std::wstring& name) {
  const Key key(hive, path);
  for (const RegistryText& value : TextValues(key)) {
    if (value.name == name) return Utf8(value.text);
  }
  return "";
}

/// The file of a value such as `/R "C:\Folder\File.xll"`: what is quoted, else all of it.
std::filesystem::path FileOfOpenValue(const std::wstring& text) {
  const std::size_t first = text.find(L'"');
  if (first == std::wstring::npos) return text;
  return text.substr(first + 1, text.find(L'"', first + 1) - first - 1);
}

BOOL CALLBACK AddLanguage(HMODULE, LPCWSTR, LPCWSTR, WORD language, LONG_PTR names) {
  wchar_t name[128];
  const LCID locale = MAKELCID(MAKELANGID(PRIMARYLANGID(language), SUBLANG_DEFAULT), SORT_DEFAULT);
  const int size = GetLocaleInfoW(locale, LOCALE_SENGLANGUAGE, name, 128);
  const std::string text =
      size > 1 ? Utf8({name, static_cast<std::size_t>(size - 1)}) : std::to_string(language);
  reinterpret_cast<std::vector<std::string>*>(names)->push_back(text);
  return TRUE;
}

std::string LocalTime(const FILETIME& time) {
  FILETIME local;
  SYSTEMTIME parts;
  if (!FileTimeToLocalFileTime(&time, &local) || !FileTimeToSystemTime(&local, &parts)) return "";
  char text[32];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u", parts.wYear, parts.wMonth,
                parts.wDay, parts.wHour, parts.wMinute);
  return text;
}

}  // namespace

std::optional<std::string> FileVersionText(const std::filesystem::path& file) {
  DWORD unused = 0;
  const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &unused);
  std::vector<std::byte> resource(size);
  void* found = nullptr;
  UINT length = 0;
  if (size == 0 || !GetFileVersionInfoW(file.c_str(), 0, size, resource.data()) ||
      !VerQueryValueW(resource.data(), L"\\", &found, &length) ||
      length < sizeof(VS_FIXEDFILEINFO)) {
    return std::nullopt;
  }
  const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(found);
  std::string text;
  for (const DWORD part : {info.dwFileVersionMS >> 16, info.dwFileVersionMS & 0xFFFF,
                           info.dwFileVersionLS >> 16, info.dwFileVersionLS & 0xFFFF}) {
    text += (text.empty() ? "" : ".") + std::to_string(part);
  }
  return text;
}

bool IsMarkedAsDownloaded(const std::filesystem::path& file) {
  const std::wstring stream = file.wstring() + L":Zone.Identifier";
  return GetFileAttributesW(stream.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::vector<std::string> MessageLanguages(const std::filesystem::path& file) {
  constexpr unsigned kTitleMessage = 2400;
  std::vector<std::string> names;
  const DataFile library(file);
  if (library.get() == nullptr) return names;
  // String resources stand in blocks of sixteen, numbered from 1.
  EnumResourceLanguagesW(library.get(), RT_STRING, MAKEINTRESOURCEW(kTitleMessage / 16 + 1),
                         &AddLanguage, reinterpret_cast<LONG_PTR>(&names));
  std::sort(names.begin(), names.end());
  return names;
}

std::string SystemDescription() {
  const std::wstring key = L"Software\\Microsoft\\Windows NT\\CurrentVersion";
  std::string text = ValueOf(HKEY_LOCAL_MACHINE, key, L"ProductName");
  const std::string build = ValueOf(HKEY_LOCAL_MACHINE, key, L"CurrentBuild");
  if (text.empty()) text = "Windows";
  if (!build.empty()) text += ", build " + build;
  // What runs Windows programs elsewhere exports its version.
  const HMODULE system = GetModuleHandleW(L"ntdll.dll");
  auto* const version = reinterpret_cast<const char* (*)()>(
      reinterpret_cast<void*>(GetProcAddress(system, "wine_get_version")));
  return version == nullptr ? text : text + ", under Wine " + version();
}

LogPlace FindLog() {
  wchar_t folder[MAX_PATH + 2];
  const DWORD length = GetTempPathW(MAX_PATH + 2, folder);
  LogPlace place;
  if (length == 0 || length > MAX_PATH + 1) return place;
  const std::filesystem::path temporary = folder;
  std::error_code ignored;
  place.marker = temporary / "BrennicLoggingDetail.txt";
  place.enabled = std::filesystem::is_regular_file(place.marker, ignored) ||
                  std::filesystem::is_regular_file(place.marker.native() + L".txt", ignored);
  place.file = temporary / "VekZavrelFuncs8.log";
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (GetFileAttributesExW(place.file.c_str(), GetFileExInfoStandard, &data))
    place.written = LocalTime(data.ftLastWriteTime);
  return place;
}

bool SamePath(const std::filesystem::path& a, const std::filesystem::path& b) {
  const std::wstring first = a.lexically_normal().make_preferred();
  const std::wstring second = b.lexically_normal().make_preferred();
  return CompareStringOrdinal(first.c_str(), -1, second.c_str(), -1, TRUE) == CSTR_EQUAL;
}

std::vector<ExcelEntry> ExcelEntries(const std::filesystem::path& file_name) {
  std::vector<ExcelEntry> entries;
  for (const std::wstring version : {L"14.0", L"15.0", L"16.0"}) {
    const std::wstring excel = L"Software\\Microsoft\\Office\\" + version + L"\\Excel\\";
    const Key options(HKEY_CURRENT_USER, excel + L"Options");
    for (const RegistryText& value : TextValues(options)) {
      const std::filesystem::path file = FileOfOpenValue(value.text);
      if (value.name.starts_with(L"OPEN") && SamePath(file.filename(), file_name))
        entries.push_back({Utf8(version), Utf8(value.name), Utf8(value.text), file});
    }
    const Key manager(HKEY_CURRENT_USER, excel + L"Add-in Manager");
    for (const RegistryText& value : TextValues(manager)) {
      const std::filesystem::path file = value.name;
      if (SamePath(file.filename(), file_name))
        entries.push_back({Utf8(version), "", Utf8(value.name), file});
    }
  }
  return entries;
}

std::string OfficePlatform() {
  return ValueOf(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Office\\ClickToRun\\Configuration",
                 L"Platform");
}

}  // namespace zavhost
