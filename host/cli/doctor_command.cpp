// ZavHost doctor: checks whether the installation is sound, and reports what support needs to know.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "host/cli/commands.h"
#include "host/cli/doctor_excel.h"
#include "host/cli/installation.h"
#include "host/cli/json_value.h"
#include "host/cli/registration_log.h"
#include "host/cli/system.h"
#include "host/cli/text_table.h"
#include "platform/library_identity.h"
#include "platform/module.h"

namespace zavhost {
namespace {

// Files.

/// The libraries beside the add-in, by product.
std::filesystem::path NameOf(const char* product) {
  return zavrel::LibraryFileName(product, zavrel::MajorVersion());
}

/// True if the file exists and has the version of this program, like everything else.
bool CheckFile(const std::filesystem::path& folder, const std::filesystem::path& name,
               const std::string& version, Findings& findings) {
  const std::filesystem::path file = (folder / name).make_preferred();
  const std::string shown = PrintablePath(name);
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
  const std::filesystem::path name = NameOf("ZavrelMessages");
  if (!CheckFile(folder, name, version, findings)) return;
  const std::vector<std::string> languages = MessageLanguages(folder / name);
  const bool english = std::find(languages.begin(), languages.end(), "English") != languages.end();
  // English replaces every missing language.
  findings.Judge(english, "Languages of the texts", languages.empty() ? "none" : Joined(languages));
}

/// True if the rank tests should be available. One library has the functions and needs the other in
/// the add-in's folder.
bool CheckRankTests(const std::filesystem::path& folder, const std::string& version,
                    Findings& findings) {
  const std::filesystem::path extensions = "ZavrelFuncs Extensions";
  std::error_code ignored;
  if (!std::filesystem::exists(folder / extensions, ignored)) {
    findings.Note(extensions.string(), "no such folder: there are no rank tests");
    return false;
  }
  const bool tests =
      CheckFile(folder, extensions / NameOf("NonparametricTests"), version, findings);
  return CheckFile(folder, NameOf("EUtilityLibrary"), version, findings) && tests;
}

/// True if the second add-in stands beside the first.
bool CheckDistributions(const std::filesystem::path& folder, const std::string& version,
                        Findings& findings) {
  std::error_code ignored;
  if (!std::filesystem::exists(folder / ZAVHOST_DISTRIBUTIONS_ADD_IN, ignored)) {
    findings.Note(ZAVHOST_DISTRIBUTIONS_ADD_IN, "no such file: there are no ZavDist functions");
    return false;
  }
  return CheckFile(folder, ZAVHOST_DISTRIBUTIONS_ADD_IN, version, findings);
}

// The add-ins at work.

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

/// What an installation has beside the add-in and its first companions.
struct Parts {
  bool rank_tests;
  bool distributions;
};

void CheckFunctions(const CommandLine& line, const Parts& parts, Findings& findings) {
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
  if (parts.rank_tests) {
    const auto& functions = engine.functions();
    const bool there = std::any_of(functions.begin(), functions.end(), [](const auto& function) {
      return function.name.find(u"ZavWSR") != std::u16string::npos;
    });
    findings.Judge(there, "Rank tests",
                   there ? "registered" : "not registered, although their library is present");
  }
  if (parts.distributions) {
    engine.LoadAddIn(line.add_in.parent_path() / ZAVHOST_DISTRIBUTIONS_ADD_IN);
    CheckValue(engine, "Distributions by name", u"=ZavDistCumulative(\"uniform\",0.25)", 0.25,
               findings);
  }
  engine.CloseAddIns();
  for (const Violation& violation : engine.judge().violations())
    findings.Problem("Rules of the Excel C API", DescribeViolation(violation));
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
    std::cout << Plural(count, "problem") << ".\n";
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
  std::cout << JsonText(root, JsonLayout::kIndented) << '\n';
}

}  // namespace

int DoctorCommand(CommandLine line) {
  if (line.add_in.empty()) line.add_in = ProgramFolder() / ZAVHOST_ADD_IN;
  std::error_code ignored;
  line.add_in = std::filesystem::absolute(line.add_in, ignored).make_preferred();
  const std::filesystem::path folder = line.add_in.parent_path();

  Findings findings;
  findings.Note("Program", std::string(ZAVHOST_VERSION) + " in " + PrintablePath(ProgramFolder()));
  findings.Note("System", SystemDescription());
  const std::string version = std::string(ZAVHOST_VERSION).substr(sizeof "ZavHost");
  CheckFile(folder, line.add_in.filename(), version, findings);
  CheckMessages(folder, version, findings);
  CheckFile(folder, NameOf("Pdflib"), version, findings);
  const Parts parts = {CheckRankTests(folder, version, findings),
                       CheckDistributions(folder, version, findings)};
  const LogPlace log = FindLog();
  CheckLog(log, findings);
  try {
    CheckFunctions(line, parts, findings);
  } catch (const std::exception& error) {
    findings.Problem("The add-in at work", error.what());
  }
  CheckExcel(line.add_in, findings);
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
