#include "host/cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

namespace zavhost {
namespace {

std::filesystem::path FromUtf8Path(const std::string& text) {
  return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

constexpr const char* kFooter =
    "Examples:\n"
    "  " ZAVHOST_NAME
    " run sales.xlsx                     recalculate and show the value of every formula\n"
    "  " ZAVHOST_NAME
    " run sales.xlsx -o sales-new.xlsx   also write a workbook with the new values\n"
    "  " ZAVHOST_NAME
    " run sales.xlsx --in-place          the same, in the workbook itself\n"
    "  " ZAVHOST_NAME
    " run sales.xlsx --json              for a program to read\n"
    "  " ZAVHOST_NAME
    " run reports --output-folder new    every workbook of a folder\n"
    "  " ZAVHOST_NAME
    " check reports                      whether the stored values are right\n"
    "  " ZAVHOST_NAME
    " eval \"=ZavMean(1,2,3)\"             one formula\n"
    "  " ZAVHOST_NAME
    " eval \"=ZavMean(price)\" --data sales.csv\n"
    "  " ZAVHOST_NAME
    " functions ZavMean                  help for a function; without a name, all of "
    "them\n"
    "  " ZAVHOST_NAME
    " distributions Weibull              the same for a distribution\n"
    "  " ZAVHOST_NAME
    " formula --to de \"=SUM(A1,2.5)\"     the formula as German Excel has it\n"
    "  " ZAVHOST_NAME
    " report summary sales.csv --by region -o REPORT.xlsx\n"
    "  " ZAVHOST_NAME
    " doctor                             check this installation\n"
    "\n"
    "Exit codes: 0 success; 1 a file, a formula or the add-in cannot be used, the memory was not\n"
    "enough, or the doctor found a problem; 2 the add-in broke a rule of the Excel C API; 3 it\n"
    "crashed; 4 circular references or formulas that cannot be read; 5 a stored value is not the\n"
    "computed one; 6 a workbook took longer than its time; 7 values may be wrong, since they "
    "depend\n"
    "on what this program does not compute; 64 an error in the command line. Of several workbooks\n"
    "the worst counts.";

struct Texts {
  std::vector<std::string> workbooks;
  std::string output, output_folder, data, add_in;
};

void AddCommonOptions(CLI::App& command, CommandLine& line, Texts& texts) {
  command
      .add_option("--add-in", texts.add_in,
                  "Load this add-in instead of the one in this program's folder")
      ->type_name("FILE");
  command.add_option("--language", line.language, "Language of the add-in's texts: en or de")
      ->check(CLI::IsMember({"en", "de"}))
      ->capture_default_str();
}

/// What the commands for workbooks have in common.
void AddWorkbookOptions(CLI::App& command, CommandLine& line, Texts& texts) {
  command.add_option("workbooks", texts.workbooks, "Workbooks, or folders with workbooks")
      ->type_name("BOOK.xlsx")
      ->required();
  command.add_flag("--all", line.show_every_formula,
                   "Show every formula, also those that neither call the add-in nor changed");
  command.add_option("--max-formulas", line.formula_limit, "Refuse a workbook with more formulas")
      ->check(CLI::Range(std::size_t{1}, std::size_t{100'000'000}))
      ->capture_default_str();
  command
      .add_option("--jobs", line.jobs,
                  "Workbooks at the same time, each in a process of its own; without it one for "
                  "each processor")
      ->check(CLI::Range(1u, 1024u))
      ->type_name("N");
  command.add_option("--timeout", line.timeout_seconds, "Give up a workbook that takes longer")
      ->check(CLI::Range(1u, 1'000'000u))
      ->type_name("SECONDS");
  command
      .add_option("--memory", line.memory_megabytes, "Give up a workbook that needs more memory")
      ->check(CLI::Range(16u, 16'000'000u))
      ->type_name("MB");
  // For the processes of a batch: no help.
  command.add_flag("--part-of-batch", line.part_of_batch)->group("");
}

CLI::App* AddFormulaCommand(CLI::App& app, CommandLine& line) {
  CLI::App* formula =
      app.add_subcommand("formula", "Translate formulas into another language of Excel");
  formula->add_option("formulas", line.names, "The formulas, with or without their equals signs")
      ->required();
  formula->add_option("--from", line.from, "The language that they are written in")
      ->type_name("LANGUAGE")
      ->capture_default_str();
  formula->add_option("--to", line.to, "The language to translate them into")
      ->type_name("LANGUAGE")
      ->required();
  formula->add_option("--style", line.style, "How references are written: a1 or r1c1")
      ->check(CLI::IsMember({"a1", "r1c1"}))
      ->capture_default_str();
  formula->add_option("--to-style", line.to_style, "How to write them, if otherwise")
      ->check(CLI::IsMember({"a1", "r1c1"}));
  formula->add_option("--cell", line.cell, "The cell of the formulas, if the styles differ")
      ->type_name("CELL")
      ->capture_default_str();
  return formula;
}

void AddFormOptions(CLI::App& command, bool& json, bool& csv) {
  auto* json_flag = command.add_flag("--json", json, "Write JSON");
  command.add_flag("--csv", csv, "Write comma-separated lines")->excludes(json_flag);
}

}  // namespace

unsigned LanguageId(const std::string& language) { return language == "de" ? 7 : 9; }

ParsedCommandLine ParseCommandLine(std::vector<std::string> arguments) {
  CommandLine line;
  Texts texts;
  bool json = false;
  bool csv = false;

  CLI::App app{
      "Recalculates Excel workbooks that use the Zavrel statistics functions, without Excel: loads "
      "the\n"
      "add-in as Excel does, computes every formula, and reports the results.",
      ZAVHOST_NAME};
  app.require_subcommand(1);
  app.set_version_flag("--version", ZAVHOST_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.footer(kFooter);

  CLI::App* run = app.add_subcommand("run", "Recalculate workbooks");
  AddWorkbookOptions(*run, line, texts);
  auto* output = run->add_option("-o,--output", texts.output,
                                 "Write the workbook with its new values to this file; everything "
                                 "else in it stays unchanged")
                     ->type_name("OUT.xlsx");
  auto* output_folder = run->add_option("--output-folder", texts.output_folder,
                                        "Write every workbook with its new values to this folder")
                            ->type_name("FOLDER")
                            ->excludes(output);
  run->add_flag("--in-place", line.in_place, "Write the new values into the workbook itself")
      ->excludes(output)
      ->excludes(output_folder);
  run->add_flag("--values-only", line.values_only,
                "Write values in place of the formulas, for programs that compute nothing");
  run->add_flag("--resume", line.resume,
                "Leave out workbooks whose output is there and newer than they are")
      ->needs(output_folder);
  AddFormOptions(*run, json, csv);
  AddCommonOptions(*run, line, texts);

  CLI::App* check =
      app.add_subcommand("check", "Compare the values stored in workbooks with the computed ones");
  AddWorkbookOptions(*check, line, texts);
  check->add_option("--digits", line.digits, "Numbers that agree to so many digits are equal")
      ->check(CLI::Range(1, 17))
      ->capture_default_str();
  check->add_flag("--json", json, "Write one line of JSON for each workbook");
  AddCommonOptions(*check, line, texts);

  CLI::App* eval = app.add_subcommand("eval", "Evaluate one formula");
  eval->add_option("formula", line.formula, "The formula, with or without its equals sign")
      ->required();
  eval->add_option("--data", texts.data,
                   "A file of comma-separated values, read as sheet Data with a name for every "
                   "column heading")
      ->type_name("FILE.csv");
  AddFormOptions(*eval, json, csv);
  AddCommonOptions(*eval, line, texts);

  CLI::App* functions =
      app.add_subcommand("functions",
                         "List the add-in's functions with their help, also those that the "
                         "function wizard hides");
  functions->add_option("names", line.names,
                        "Show only these functions, with the help for every argument");
  functions->add_flag("--hidden")->group("");  // listed anyway; scripts may still ask for them
  AddFormOptions(*functions, json, csv);
  AddCommonOptions(*functions, line, texts);

  CLI::App* distributions =
      app.add_subcommand("distributions", "List the distributions of the ZavDist functions");
  distributions->add_option("names", line.names,
                            "Show only these distributions, with their parameters and formula");
  distributions->add_flag("--json", json, "Write JSON");

  CLI::App* formula = AddFormulaCommand(app, line);

  CLI::App* report = app.add_subcommand(
      "report", "Analyse a table: write a new workbook with live formulas and charts");
  report->add_flag("--list", line.list_analyses, "Explain the analyses and end");
  auto* analysis = report->add_option("analysis", line.analysis, "The analysis");
  auto* analysed =
      report->add_option("data", texts.data, "The table, with a heading over every column")
          ->type_name("DATA.csv|BOOK.xlsx");
  report->add_option("--columns", line.names, "These columns instead of all that have numbers")
      ->type_name("NAME,...")
      ->delimiter(',');
  report->add_option("--by", line.by, "The column that divides the rows into groups")
      ->type_name("COLUMN");
  auto* report_output =
      report->add_option("-o,--output", texts.output, "The new workbook")->type_name("OUT.xlsx");
  AddCommonOptions(*report, line, texts);

  CLI::App* doctor =
      app.add_subcommand("doctor", "Check an installation and report what support needs to know");
  doctor->add_flag("--json", json, "Write JSON");
  AddCommonOptions(*doctor, line, texts);

  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    const int code = app.exit(error, std::cout, std::cerr);
    return {std::nullopt, code == 0 ? kExitSuccess : kExitUsage};
  }

  if (report->parsed() && !line.list_analyses) {
    for (const CLI::Option* needed : {analysis, analysed, report_output}) {
      if (needed->count() > 0) continue;
      std::cerr << "report: " << needed->get_name() << " is required\n";
      return {std::nullopt, kExitUsage};
    }
  }
  for (const auto& [option, name] :
       {std::pair{"--output", &texts.output}, {"--output-folder", &texts.output_folder}}) {
    if (run->count(option) > 0 && name->empty()) {
      std::cerr << option << ": a name is missing\n";
      return {std::nullopt, kExitUsage};
    }
  }
  const std::pair<const CLI::App*, Command> commands[] = {{run, Command::kRun},
                                                          {check, Command::kCheck},
                                                          {eval, Command::kEval},
                                                          {functions, Command::kFunctions},
                                                          {distributions, Command::kDistributions},
                                                          {formula, Command::kFormula},
                                                          {report, Command::kReport},
                                                          {doctor, Command::kDoctor}};
  for (const auto& [command, value] : commands) {
    if (command->parsed()) line.command = value;
  }
  line.form = json ? OutputForm::kJson : csv ? OutputForm::kCsv : OutputForm::kTable;
  for (const std::string& workbook : texts.workbooks)
    line.workbooks.push_back(FromUtf8Path(workbook));
  line.output = FromUtf8Path(texts.output);
  line.output_folder = FromUtf8Path(texts.output_folder);
  line.data = FromUtf8Path(texts.data);
  line.add_in = FromUtf8Path(texts.add_in);
  return {line, kExitSuccess};
}

}  // namespace zavhost
