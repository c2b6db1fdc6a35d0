#include "host/cli/windows/excel_settings.h"

#include <windows.h>

// After windows.h.
#include <tlhelp32.h>

#include "host/workbook/text.h"
#include "platform/registry.h"
#include "platform/windows/system_handle.h"
#include "platform/windows/wide.h"

namespace zavhost {
namespace {

using zavrel::RegistryHive;
using zavrel::RegistryKey;
using zavrel::RegistryText;

std::vector<RegistryText> TextsOfUser(const std::u16string& path) {
  const auto key = RegistryKey::Open(RegistryHive::kPerUser, path);
  return key ? key->ReadTexts() : std::vector<RegistryText>();
}

/// The file in a value such as `/R "C:\Folder\File.xll"`: the quoted part, or the whole value.
std::filesystem::path FileOfOpenValue(const std::u16string& text) {
  const std::size_t first = text.find(u'"');
  if (first == std::u16string::npos) return text;
  return text.substr(first + 1, text.find(u'"', first + 1) - first - 1);
}

/// What is listed at one moment: processes, or the modules of a process in the order of loading.
class Snapshot {
 public:
  explicit Snapshot(DWORD kind, DWORD process = 0) {
    // While the process loads a library, the system may have to be asked again.
    for (int attempt = 0; attempt < 10; ++attempt) {
      snapshot_ = zavrel::SystemHandle(CreateToolhelp32Snapshot(kind, process));
      if (snapshot_ || GetLastError() != ERROR_BAD_LENGTH) return;
    }
  }

  /// Calls `visit` with each entry.
  template <class Entry, class First, class Next, class Visit>
  void ForEach(First first, Next next, Visit visit) const {
    Entry entry{};
    entry.dwSize = sizeof entry;
    if (!snapshot_) return;
    for (BOOL found = first(snapshot_.get(), &entry); found != 0;
         found = next(snapshot_.get(), &entry))
      visit(entry);
  }

 private:
  zavrel::SystemHandle snapshot_;
};

}  // namespace

std::vector<ExcelEntry> ExcelEntries(const std::filesystem::path& file_name) {
  std::vector<ExcelEntry> entries;
  for (const std::u16string version : {u"14.0", u"15.0", u"16.0"}) {
    const std::u16string excel = u"Software\\Microsoft\\Office\\" + version + u"\\Excel\\";
    for (const auto& [name, text] : TextsOfUser(excel + u"Options")) {
      const std::filesystem::path file = FileOfOpenValue(text);
      if (name.starts_with(u"OPEN") && SamePath(file.filename(), file_name))
        entries.push_back({Utf8FromUtf16(version), Utf8FromUtf16(name), Utf8FromUtf16(text), file});
    }
    for (const auto& [name, text] : TextsOfUser(excel + u"Add-in Manager")) {
      const std::filesystem::path file = name;
      if (SamePath(file.filename(), file_name))
        entries.push_back({Utf8FromUtf16(version), "", Utf8FromUtf16(name), file});
    }
  }
  return entries;
}

std::string OfficePlatform() {
  const auto key = RegistryKey::Open(RegistryHive::kMachineWide,
                                     u"Software\\Microsoft\\Office\\ClickToRun\\Configuration");
  return Utf8FromUtf16((key ? key->ReadText(u"Platform") : std::nullopt).value_or(u""));
}

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

bool SamePath(const std::filesystem::path& a, const std::filesystem::path& b) {
  const std::wstring first = a.lexically_normal().make_preferred();
  const std::wstring second = b.lexically_normal().make_preferred();
  return CompareStringOrdinal(first.c_str(), -1, second.c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace zavhost
