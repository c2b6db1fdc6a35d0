#include "host/cli/system.h"

#include <io.h>

#include <cstdio>
#include <optional>

#include "host/workbook/text.h"
#include "platform/module.h"
#include "platform/operating_system.h"
#include "platform/windows/wide.h"

// After windows.h.
#include <tlhelp32.h>

namespace zavhost {
namespace {

/// What is listed at one moment: processes, or the modules of a process in the order of loading.
class Snapshot {
 public:
  explicit Snapshot(DWORD kind, DWORD process = 0) {
    // While the process loads a library, the system may have to be asked again.
    for (int attempt = 0; attempt < 10; ++attempt) {
      handle_ = CreateToolhelp32Snapshot(kind, process);
      if (handle_ != INVALID_HANDLE_VALUE || GetLastError() != ERROR_BAD_LENGTH) return;
    }
  }
  ~Snapshot() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

  /// Calls `visit` with each entry.
  template <class Entry, class First, class Next, class Visit>
  void ForEach(First first, Next next, Visit visit) const {
    Entry entry{};
    entry.dwSize = sizeof entry;
    if (handle_ == INVALID_HANDLE_VALUE) return;
    for (BOOL found = first(handle_, &entry); found != 0; found = next(handle_, &entry))
      visit(entry);
  }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

}  // namespace

std::vector<LoadingProgram> ProgramsWith(const std::filesystem::path& file_name) {
  std::vector<LoadingProgram> programs;
  const Snapshot processes(TH32CS_SNAPPROCESS);
  processes.ForEach<PROCESSENTRY32W>(Process32FirstW, Process32NextW, [&](const auto& process) {
    if (process.th32ProcessID == GetCurrentProcessId() || process.th32ProcessID == 0) return;
    LoadingProgram program{
        Utf8FromUtf16(zavrel::FromWide(process.szExeFile)), process.th32ProcessID, {}};
    const Snapshot modules(TH32CS_SNAPMODULE, process.th32ProcessID);
    modules.ForEach<MODULEENTRY32W>(Module32FirstW, Module32NextW, [&](const auto& module) {
      if (SamePath(module.szModule, file_name)) program.copies.emplace_back(module.szExePath);
    });
    if (!program.copies.empty()) programs.push_back(std::move(program));
  });
  return programs;
}

std::filesystem::path ExcelStartFolder() {
  const wchar_t* roaming = _wgetenv(L"APPDATA");
  if (roaming == nullptr) return {};
  return std::filesystem::path(roaming) / L"Microsoft" / L"Excel" / L"XLSTART";
}

bool StderrIsTerminal() { return _isatty(_fileno(stderr)) != 0; }

std::string SystemDescription() {
  std::string text = Utf8FromUtf16(zavrel::OperatingSystemDescription());
  // An emulation of Windows exports its version.
  const auto library = zavrel::LoadedModule::ByName(u"ntdll");
  const auto version = library ? library->FindExport("wine_get_version") : nullptr;
  if (version == nullptr) return text;
  return text + ", under Wine " + zavrel::AsFunction<const char*()>(version)();
}

std::string LanguageName(std::uint16_t language) {
  wchar_t name[128];
  const LCID locale = MAKELCID(MAKELANGID(PRIMARYLANGID(language), SUBLANG_DEFAULT), SORT_DEFAULT);
  if (GetLocaleInfoW(locale, LOCALE_SENGLANGUAGE, name, 128) <= 1) return std::to_string(language);
  return Utf8FromUtf16(zavrel::FromWide(name));
}

bool IsMarkedAsDownloaded(const std::filesystem::path& file) {
  const std::wstring stream = file.wstring() + L":Zone.Identifier";
  return GetFileAttributesW(stream.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool SamePath(const std::filesystem::path& a, const std::filesystem::path& b) {
  const std::wstring first = a.lexically_normal().make_preferred();
  const std::wstring second = b.lexically_normal().make_preferred();
  return CompareStringOrdinal(first.c_str(), -1, second.c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace zavhost
