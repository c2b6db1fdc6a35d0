#include "platform/registry.h"

#include "platform/windows/system_message.h"
#include "platform/windows/wide.h"

namespace zavrel {
namespace {

HKEY RootOf(RegistryHive hive) {
  return hive == RegistryHive::kPerUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

HKEY KeyOf(void* key) { return static_cast<HKEY>(key); }

/// A value may have been stored without a terminator, or with more text after one.
std::u16string TextOf(std::wstring_view stored) {
  return FromWide(stored.substr(0, stored.find(L'\0')));
}

bool IsDone(LSTATUS status, std::string* problem) {
  if (status == ERROR_SUCCESS) return true;
  if (problem != nullptr) *problem = SystemMessage(static_cast<DWORD>(status));
  return false;
}

}  // namespace

std::optional<RegistryKey> RegistryKey::Open(RegistryHive hive, const std::u16string& path,
                                             std::string* problem) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(RootOf(hive), ToWide(path).c_str(), 0, KEY_READ, &key);
  if (!IsDone(status, problem)) return std::nullopt;
  return RegistryKey(key);
}

std::optional<RegistryKey> RegistryKey::Create(RegistryHive hive, const std::u16string& path,
                                               std::string* problem) {
  HKEY key = nullptr;
  const LSTATUS status =
      RegCreateKeyExW(RootOf(hive), ToWide(path).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_READ | KEY_WRITE, nullptr, &key, nullptr);
  if (!IsDone(status, problem)) return std::nullopt;
  return RegistryKey(key);
}

RegistryKey::~RegistryKey() {
  if (key_ != nullptr) RegCloseKey(KeyOf(key_));
}

std::optional<std::u16string> RegistryKey::ReadText(const std::u16string& name) const {
  const std::wstring wide_name = ToWide(name);
  std::wstring text(256, L'\0');
  // RegGetValue terminates the text even if it was stored without a terminator. The value may grow
  // between two calls, hence the loop.
  while (true) {
    auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    const LSTATUS status = RegGetValueW(KeyOf(key_), nullptr, wide_name.c_str(), RRF_RT_REG_SZ,
                                        nullptr, text.data(), &bytes);
    if (status == ERROR_SUCCESS) return TextOf(text);
    if (status != ERROR_MORE_DATA || text.size() > (1u << 20)) return std::nullopt;
    text.resize(text.size() * 2);
  }
}

std::optional<std::uint32_t> RegistryKey::ReadNumber(const std::u16string& name) const {
  DWORD number = 0;
  DWORD bytes = sizeof number;
  const LSTATUS status = RegGetValueW(KeyOf(key_), nullptr, ToWide(name).c_str(), RRF_RT_REG_DWORD,
                                      nullptr, &number, &bytes);
  if (status != ERROR_SUCCESS) return std::nullopt;
  return number;
}

std::vector<RegistryText> RegistryKey::ReadTexts() const {
  constexpr DWORD kLongest = 16384;  // of a name; longer texts are ignored
  std::vector<RegistryText> texts;
  std::wstring name(kLongest, L'\0');
  std::wstring text(kLongest, L'\0');
  for (DWORD index = 0;; ++index) {
    DWORD name_size = kLongest;
    DWORD bytes = kLongest * sizeof(wchar_t);
    DWORD type = 0;
    const LSTATUS status = RegEnumValueW(KeyOf(key_), index, name.data(), &name_size, nullptr,
                                         &type, reinterpret_cast<BYTE*>(text.data()), &bytes);
    if (status == ERROR_MORE_DATA) continue;
    if (status != ERROR_SUCCESS) return texts;  // there are no more
    if (type != REG_SZ && type != REG_EXPAND_SZ) continue;
    texts.push_back({FromWide(name.substr(0, name_size)),
                     TextOf(std::wstring_view(text).substr(0, bytes / sizeof(wchar_t)))});
  }
}

bool RegistryKey::WriteText(const std::u16string& name, const std::u16string& text,
                            std::string* problem) {
  const std::wstring wide = ToWide(text);
  return IsDone(RegSetValueExW(KeyOf(key_), ToWide(name).c_str(), 0, REG_SZ,
                               reinterpret_cast<const BYTE*>(wide.c_str()),
                               static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t))),
                problem);
}

bool RegistryKey::WriteNumber(const std::u16string& name, std::uint32_t number,
                              std::string* problem) {
  return IsDone(RegSetValueExW(KeyOf(key_), ToWide(name).c_str(), 0, REG_DWORD,
                               reinterpret_cast<const BYTE*>(&number), sizeof number),
                problem);
}

bool RegistryKey::DeleteValue(const std::u16string& name, std::string* problem) {
  const LSTATUS status = RegDeleteValueW(KeyOf(key_), ToWide(name).c_str());
  return status == ERROR_FILE_NOT_FOUND || IsDone(status, problem);
}

}  // namespace zavrel
