#include <windows.h>

#include "host/capi/module.h"
#include "host/workbook/workbook.h"

namespace zavhost {
namespace {

std::string SystemMessage(DWORD error) {
  wchar_t buffer[512];
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                     buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
  std::u16string text(reinterpret_cast<const char16_t*>(buffer), length);
  while (!text.empty() && (text.back() <= u' ' || text.back() == u'.')) text.pop_back();
  return text.empty() ? "error " + std::to_string(error) : Utf8FromUtf16(text);
}

std::filesystem::path FileOf(HMODULE module) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace

Module::Module(const std::filesystem::path& file) {
  // Nobody reads a message box that an add-in opens in the middle of a formula.
  SetEnvironmentVariableW(L"ZAVREL_NO_MESSAGE_BOX", L"1");
  // The add-in's own folder is searched for the libraries that it needs, and no dialog is shown.
  DWORD old_mode = 0;
  SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &old_mode);
  std::error_code ignored;
  const std::filesystem::path absolute = std::filesystem::absolute(file, ignored);
  handle_ = LoadLibraryExW(absolute.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  const DWORD error = GetLastError();
  SetThreadErrorMode(old_mode, nullptr);
  if (handle_ == nullptr) {
    throw WorkbookError("the add-in " + Utf8FromUtf16(file.u16string()) +
                        " cannot be loaded: " + SystemMessage(error));
  }
  file_ = FileOf(static_cast<HMODULE>(handle_));
}

Module::~Module() { FreeLibrary(static_cast<HMODULE>(handle_)); }

void* Module::Find(const std::string& name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name.c_str()));
}

void* Module::Find(std::uint16_t ordinal) const {
  return reinterpret_cast<void*>(
      GetProcAddress(static_cast<HMODULE>(handle_),
                     reinterpret_cast<const char*>(static_cast<std::uintptr_t>(ordinal))));
}

void* ProgramHandle() { return GetModuleHandleW(nullptr); }

}  // namespace zavhost
