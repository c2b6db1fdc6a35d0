#include "host/cli/doctor_excel.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <set>

#include "host/cli/system.h"
#include "host/cli/windows/excel_settings.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

constexpr const char16_t* kAddIn = u"ZavrelFuncs8_x64.xll";
constexpr const char16_t* kCompanion = u"ZavrelCompanion.xlam";  // once a user has made it

/// True if Excel opens any copy of the add-in.
bool CheckAddInEntries(const std::vector<ExcelEntry>& entries, const std::filesystem::path& add_in,
                       Findings& findings) {
  bool opened = false;
  int copies = 0;  // that are there
  for (const ExcelEntry& entry : entries) {
    const std::string what = "Excel " + entry.version + ", add-in";
    const std::string shown = entry.name + " = " + entry.text;
    if (entry.name.empty()) {
      findings.Note(what, "not ticked in Excel's list: " + entry.text);
    } else if (SamePath(entry.file, add_in)) {
      findings.Good(what, shown);
    } else {
      findings.Note(what, "opens another copy: " + shown);
    }
    opened = opened || !entry.name.empty();
    std::error_code ignored;
    if (!entry.name.empty() && std::filesystem::exists(entry.file, ignored)) ++copies;
  }
  if (copies > 1) {
    findings.Problem("Excel " + entries[0].version + ", add-in",
                     fmt::format("Excel opens {} copies: untick all but one", copies));
  }
  return opened;
}

/// True if Excel opens a companion workbook; users may keep it in any folder.
bool CheckCompanionEntries(const std::vector<ExcelEntry>& entries, Findings& findings) {
  bool opened = false;
  for (const ExcelEntry& entry : entries) {
    const std::string what = "Excel " + entry.version + ", companion";
    const std::string shown = entry.name + " = " + entry.text;
    std::error_code ignored;
    if (entry.name.empty()) {
      findings.Note(what, "not ticked in Excel's list: " + entry.text);
    } else if (entry.file.is_absolute() && !std::filesystem::exists(entry.file, ignored)) {
      findings.Problem(what, "the workbook does not exist: " + shown);
    } else {
      findings.Good(what, shown);
      opened = true;
    }
  }
  return opened;
}

/// What the programs have loaded that run now. Macros find a library by its name, so they use the
/// copy that was loaded first.
void CheckRunningPrograms(Findings& findings) {
  for (const LoadingProgram& program : ProgramsWith(kAddIn)) {
    const std::string what = "Running " + program.name;
    const std::string first = PrintablePath(program.copies[0]);
    if (program.copies.size() == 1) {
      findings.Note(what, fmt::format("process {}, has loaded {}", program.process, first));
      continue;
    }
    std::vector<std::string> others;
    for (std::size_t i = 1; i < program.copies.size(); ++i)
      others.push_back(PrintablePath(program.copies[i]));
    findings.Problem(what,
                     fmt::format("process {}, has loaded {} copies: functions and macros use "
                                 "{}, not {}. Close the program and start it again",
                                 program.process, program.copies.size(), first, Joined(others)));
  }
}

/// Excel opens what is in its start folder in addition to its list.
void CheckStartFolder(Findings& findings) {
  const std::filesystem::path folder = ExcelStartFolder();
  std::error_code ignored;
  for (const char16_t* name : {kAddIn, kCompanion}) {
    if (!folder.empty() && std::filesystem::exists(folder / name, ignored)) {
      findings.Problem("Excel's start folder",
                       PrintablePath(folder / name) +
                           " is opened in addition to Excel's list of add-ins: delete it");
    }
  }
}

void CheckSettings(const std::filesystem::path& add_in, Findings& findings) {
  const std::string platform = OfficePlatform();
  if (platform == "x86")
    findings.Problem("Excel", "a 32-bit Office, which cannot load this 64-bit add-in");
  if (!platform.empty() && platform != "x86") findings.Good("Excel", "Office is " + platform);
  const std::vector<ExcelEntry> add_ins = ExcelEntries(kAddIn);
  const std::vector<ExcelEntry> companions = ExcelEntries(kCompanion);
  if (add_ins.empty()) findings.Note("Excel's add-ins", "the add-in is not in this user's list");
  std::set<std::string> versions;
  for (const auto* entries : {&add_ins, &companions}) {
    for (const ExcelEntry& entry : *entries) versions.insert(entry.version);
  }
  for (const std::string& version : versions) {
    const auto of_version = [&](const std::vector<ExcelEntry>& entries) {
      std::vector<ExcelEntry> chosen;
      std::copy_if(entries.begin(), entries.end(), std::back_inserter(chosen),
                   [&](const ExcelEntry& entry) { return entry.version == version; });
      return chosen;
    };
    const bool opens_add_in = CheckAddInEntries(of_version(add_ins), add_in, findings);
    const bool opens_companion = CheckCompanionEntries(of_version(companions), findings);
    if (opens_add_in && !opens_companion) {
      findings.Problem("Excel " + version + ", companion",
                       "Excel opens no " + PrintableUtf8(kCompanion) +
                           ": unless another workbook announces itself, it has only "
                           "ZavrelFuncsVersion; see docs/install.html");
    }
  }
}

}  // namespace

void CheckExcel(const std::filesystem::path& add_in, Findings& findings) {
  CheckSettings(add_in, findings);
  CheckStartFolder(findings);
  CheckRunningPrograms(findings);
}

}  // namespace zavhost
