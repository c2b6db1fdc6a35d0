// ZavHost doctor: checks whether the installation is sound, and reports what support needs to know.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <iterator>
#include <set>

#include "host/cli/commands.h"
#include "host/cli/installation.h"
#include "host/cli/json_value.h"
#include "host/cli/registration_log.h"
#include "host/cli/system.h"
#include "host/cli/text_table.h"

namespace zavhost {
namespace {

enum class Verdict { kGood, kNote, kProblem };

struct Finding {
  Verdict verdict;
  std::string what;
  std::string detail;
};

class Findings {
 public:
  void Good(std::string what, std::string detail) {
    Add(Verdict::kGood, std::move(what), std::move(detail));
  }
  void Note(std::string what, std::string detail) {
    Add(Verdict::kNote, std::move(what), std::move(detail));
  }
  void Problem(std::string what, std::string detail) {
    Add(Verdict::kProblem, std::move(what), std::move(detail));
  }
  void Judge(bool good, std::string what, std::string detail) {
    Add(good ? Verdict::kGood : Verdict::kProblem, std::move(what), std::move(detail));
  }
  const std::vector<Finding>& all() const { return all_; }
  std::size_t problems() const {
    return static_cast<std::size_t>(std::count_if(
        all_.begin(), all_.end(), [](const Finding& f) { return f.verdict == Verdict::kProblem; }));
  }

 private:
  void Add(Verdict verdict, std::string what, std::string detail) {
    all_.push_back({verdict, std::move(what), std::move(detail)});
  }

  std::vector<Finding> all_;
};

std::string Joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : ", ") + text;
  return all;
}

// Files.

constexpr const char16_t* kAddIn = u"ZavrelFuncs8_x64.xll";
constexpr const char16_t* kCompanion = u"ZavrelCompanion.xlam";  // once a user has made it
constexpr const char16_t* kMessages = u"ZavrelMessages8_x64.DLL";
constexpr const char16_t* kDistributions = u"Pdflib8_x64.DLL";
// The libraries of the rank tests: the first has the functions and needs the second in the add-in's
// folder.
constexpr const char16_t* kRankTests = u"ZavrelFuncs Extensions/NonparametricTests8_x64.DLL";
constexpr const char16_t* kRankTestsUtility = u"EUtilityLibrary8_x64.DLL";

/// True if the file exists and has the version of this program, like everything else.
bool CheckFile(const std::filesystem::path& folder, std::u16string_view name,
               const std::string& version, Findings& findings) {
  const std::filesystem::path file = (folder / name).make_preferred();
  const std::string shown = PrintableUtf8(name);
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored)) {
    findings.Problem(shown, "missing from " + PrintablePath(file.parent_path()));
    return false;
  }
  if (IsMarkedAsDownloaded(file)) {
    findings.Problem(shown, "marked as downloaded, so Excel blocks it: choose Properties, Unblock");
  }
  const std::string found = FileVersionText(file).value_or("none");
  if (found != version) {
    findings.Problem(shown, "version " + found + " does not match this program's " + version);
    return false;
  }
  findings.Good(shown, "version " + found);
  return true;
}

void CheckMessages(const std::filesystem::path& folder, const std::string& version,
                   Findings& findings) {
  if (!CheckFile(folder, kMessages, version, findings)) return;
  const std::vector<std::string> languages = MessageLanguages(folder / kMessages);
  const bool english = std::find(languages.begin(), languages.end(), "English") != languages.end();
  // English replaces every missing language.
  findings.Judge(english, "Languages of the texts", languages.empty() ? "none" : Joined(languages));
}

/// True if the rank tests should be available.
bool CheckRankTests(const std::filesystem::path& folder, const std::string& version,
                    Findings& findings) {
  std::error_code ignored;
  if (!std::filesystem::exists(folder / "ZavrelFuncs Extensions", ignored)) {
    findings.Note("ZavrelFuncs Extensions", "no such folder: there are no rank tests");
    return false;
  }
  const bool tests = CheckFile(folder, kRankTests, version, findings);
  return CheckFile(folder, kRankTestsUtility, version, findings) && tests;
}

// The add-in at work.

void CheckValue(Engine& engine, const char* what, std::u16string_view formula, double expected,
                Findings& findings) {
  const Operand result = engine.Evaluate(formula);
  const auto* value = std::get_if<Value>(&result);
  const double* number = value == nullptr ? nullptr : value->number();
  const bool good = number != nullptr && std::abs(*number - expected) < 1e-12;
  findings.Judge(
      good, what,
      Utf8FromUtf16(formula) + " gives " + (value == nullptr ? "no value" : ExactText(*value)));
}

void CheckFunctions(const CommandLine& line, bool rank_tests, Findings& findings) {
  Workbook workbook;
  workbook.sheets.emplace_back(u"Sheet1");
  EngineOptions options;
  options.language = LanguageId(line.language);
  Engine engine(std::move(workbook), std::move(options));
  engine.LoadAddIn(line.add_in);
  // Opening registers the version function, which shows that a call reached the host's callback.
  const bool opened = !engine.functions().empty();
  findings.Judge(opened, "Opening",
                 opened ? "the add-in opens and finds the callback"
                        : "the add-in opens, but does not find its host's callback");
  const std::size_t before = engine.functions().size();
  engine.Announce(5);
  const std::size_t count = engine.functions().size();
  findings.Judge(count > before, "Registered functions",
                 std::to_string(count) + " once the companion announces itself");
  for (const std::string& refused : engine.refused_registrations())
    findings.Problem("Registered functions", refused);
  CheckValue(engine, "A statistic", u"=ZavMean(1,2,3)", 2, findings);
  CheckValue(engine, "Normal distribution", u"=ZavNormal(0,1,\"xtop\",0)", 0.5, findings);
  CheckValue(engine, "Student's distribution", u"=ZavStudent(1,\"xtop\",1)", 0.75, findings);
  CheckValue(engine, "Chi-square distribution", u"=ZavChisq(4,\"mode\")", 2, findings);
  CheckValue(engine, "F distribution", u"=ZavF(2,2,\"xtoq\",3)", 0.25, findings);
  CheckValue(engine, "Binomial distribution", u"=ZavBinomial(10,0.5,\"ptox\",0.05)", 2, findings);
  if (rank_tests) {
    const auto& functions = engine.functions();
    const bool there = std::any_of(functions.begin(), functions.end(), [](const auto& function) {
      return function.name.find(u"ZavWSR") != std::u16string::npos;
    });
    findings.Judge(there, "Rank tests",
                   there ? "registered" : "not registered, although their library is present");
  }
  engine.CloseAddIn();
  for (const Violation& violation : engine.judge().violations())
    findings.Problem("Rules of the Excel C API", DescribeViolation(violation));
}

// Excel.

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

void CheckExcel(const std::filesystem::path& add_in, Findings& findings) {
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

void DescribeLog(const LogPlace& log, Findings& findings) {
  const std::string written = log.written.empty() ? "no log so far" : "last written " + log.written;
  if (log.enabled) {
    findings.Note("Log", "on, " + PrintablePath(log.file) + ", " + written);
  } else {
    findings.Note("Log", "off; an empty file " + PrintablePath(log.marker) + " switches it on");
  }
}

/// Opening the add-in starts a new log, so the one of the latest session is read before.
void CheckLog(const LogPlace& log, Findings& findings) {
  for (const std::string& problem : RegistrationProblems(log.file))
    findings.Problem("Log, registration", problem);
}

// The report.

const char* Word(Verdict verdict) {
  switch (verdict) {
    case Verdict::kGood:
      return "ok";
    case Verdict::kNote:
      return "note";
    case Verdict::kProblem:
      return "PROBLEM";
  }
  return "";
}

void PrintTable(const Findings& findings) {
  TextTable table({{""}, {"What"}, {"Found", Alignment::kLeft, 300}});
  for (const Finding& finding : findings.all())
    table.AddRow({Word(finding.verdict), finding.what, finding.detail});
  std::cout << '\n' << table.Render() << '\n';
  const std::size_t count = findings.problems();
  if (count == 0) {
    std::cout << "The installation is sound.\n";
  } else {
    std::cout << count << (count == 1 ? " problem.\n" : " problems.\n");
  }
}

void PrintJson(const Findings& findings) {
  nlohmann::ordered_json root;
  root["sound"] = findings.problems() == 0;
  root["findings"] = nlohmann::ordered_json::array();
  for (const Finding& finding : findings.all()) {
    root["findings"].push_back(
        {{"verdict", finding.verdict == Verdict::kProblem ? "problem" : Word(finding.verdict)},
         {"what", finding.what},
         {"found", finding.detail}});
  }
  std::cout << root.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

}  // namespace

int DoctorCommand(CommandLine line) {
  if (line.add_in.empty()) line.add_in = ProgramFolder() / kAddIn;
  std::error_code ignored;
  line.add_in = std::filesystem::absolute(line.add_in, ignored).make_preferred();
  const std::filesystem::path folder = line.add_in.parent_path();

  Findings findings;
  findings.Note("Program", std::string(ZAVHOST_VERSION) + " in " + PrintablePath(ProgramFolder()));
  findings.Note("System", SystemDescription());
  const std::string version = std::string(ZAVHOST_VERSION).substr(sizeof "ZavHost");
  CheckFile(folder, line.add_in.filename().u16string(), version, findings);
  CheckMessages(folder, version, findings);
  CheckFile(folder, kDistributions, version, findings);
  const bool rank_tests = CheckRankTests(folder, version, findings);
  const LogPlace log = FindLog();
  CheckLog(log, findings);
  try {
    CheckFunctions(line, rank_tests, findings);
  } catch (const std::exception& error) {
    findings.Problem("The add-in at work", error.what());
  }
  CheckExcel(line.add_in, findings);
  CheckStartFolder(findings);
  CheckRunningPrograms(findings);
  DescribeLog(log, findings);

  if (line.form == OutputForm::kJson) {
    PrintJson(findings);
  } else {
    PrintTable(findings);
  }
  std::cout.flush();
  return findings.problems() == 0 ? kExitSuccess : kExitError;
}

}  // namespace zavhost
