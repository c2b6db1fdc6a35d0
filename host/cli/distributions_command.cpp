#include <fmt/format.h>

#include <algorithm>
#include <iostream>
#include <span>

#include "contracts/pdflib.h"
#include "host/cli/commands.h"
#include "host/cli/json_value.h"
#include "host/cli/text_table.h"
#include "platform/module.h"
#include "platform/utf.h"

namespace zavhost {
namespace {

constexpr std::size_t kWidth = 96;

/// The distribution companion in the program's folder.
class Companion {
 public:
  Companion() {
    const std::filesystem::path file = ProgramFolder() / ZAVHOST_PDFLIB;
    std::string problem;
    library_ = zavrel::Module::Load(file, &problem);
    if (!library_) throw WorkbookError(Utf8FromPath(file) + " cannot be loaded: " + problem);
    Bind("pdfCount", count_);
    Bind("pdfFind", find_);
    Bind("pdfDescribe", describe_);
  }

  std::vector<const pdfDescription*> All() const {
    std::vector<const pdfDescription*> all(static_cast<std::size_t>(count_()));
    std::ranges::generate(all,
                          [this, place = std::int32_t{0}]() mutable { return describe_(place++); });
    return all;
  }

  const pdfDescription* Named(const std::string& name) const {
    const pdfDescription* const found = describe_(find_(name.c_str()));
    if (found == nullptr) {
      throw WorkbookError("there is no distribution " + name +
                          "; '" ZAVHOST_NAME " distributions' lists all of them");
    }
    return found;
  }

 private:
  template <class Function>
  void Bind(const char* name, Function*& function) {
    function = zavrel::AsFunction<Function>(library_->FindExport(name));
    if (function == nullptr)
      throw WorkbookError("the distribution companion has no function " + std::string(name));
  }

  std::optional<zavrel::Module> library_;
  decltype(&pdfCount) count_ = nullptr;
  decltype(&pdfFind) find_ = nullptr;
  decltype(&pdfDescribe) describe_ = nullptr;
};

using Descriptions = std::vector<const pdfDescription*>;

const char* KindOf(const pdfDescription& description) {
  return description.is_discrete != 0 ? "discrete" : "continuous";
}

std::span<const pdfParameter> ParametersOf(const pdfDescription& description) {
  return {description.parameters, static_cast<std::size_t>(description.parameter_count)};
}

/// "shape, [scale]": in brackets those that may be left out.
std::string Signature(const pdfDescription& description) {
  std::string text;
  for (const pdfParameter& parameter : ParametersOf(description)) {
    if (!text.empty()) text += ", ";
    text += parameter.has_default != 0 ? "[" + std::string(parameter.name) + "]" : parameter.name;
  }
  return text;
}

void PrintList(const Descriptions& list) {
  TextTable table({{"Distribution"}, {"Parameters"}, {"Kind"}});
  for (const pdfDescription* description : list)
    table.AddRow({description->name, Signature(*description), KindOf(*description)});
  std::cout << table.Render() << '\n' << Plural(list.size(), "distribution") << '\n';
}

void PrintWrapped(const std::string& heading, const std::string& text) {
  std::string indent = "  " + heading + std::string(12 - heading.size(), ' ');
  for (const std::string& part : WrapWords(text, kWidth - indent.size())) {
    std::cout << indent << part << '\n';
    indent.assign(indent.size(), ' ');
  }
}

void PrintDetails(const pdfDescription& description) {
  std::cout << '\n' << description.name << '(' << Signature(description) << ")\n";
  if (*description.other_names != 0) PrintWrapped("also", description.other_names);
  PrintWrapped("kind", KindOf(description));
  PrintWrapped("support", description.support);
  PrintWrapped("formula", description.formula);
  PrintWrapped("source", description.source);
  for (const pdfParameter& parameter : ParametersOf(description)) {
    std::string text = parameter.domain;
    if (parameter.has_default != 0) text += fmt::format(", {} by default", parameter.by_default);
    std::cout << "  " << parameter.name << ' ' << text << '\n';
  }
}

nlohmann::ordered_json AsJson(const pdfDescription& description) {
  nlohmann::ordered_json entry;
  entry["name"] = description.name;
  entry["other_names"] = description.other_names;
  entry["kind"] = KindOf(description);
  entry["parameters"] = nlohmann::ordered_json::array();
  for (const pdfParameter& parameter : ParametersOf(description)) {
    nlohmann::ordered_json described;
    described["name"] = parameter.name;
    described["domain"] = parameter.domain;
    if (parameter.has_default != 0) described["default"] = parameter.by_default;
    entry["parameters"].push_back(std::move(described));
  }
  entry["support"] = description.support;
  entry["formula"] = description.formula;
  entry["source"] = description.source;
  return entry;
}

}  // namespace

int DistributionsCommand(const CommandLine& line) {
  const Companion companion;
  Descriptions list = companion.All();
  if (!line.names.empty()) {
    list.clear();
    for (const std::string& name : line.names) list.push_back(companion.Named(name));
  }
  if (line.form == OutputForm::kJson) {
    auto entries = nlohmann::ordered_json::array();
    for (const pdfDescription* description : list) entries.push_back(AsJson(*description));
    std::cout << JsonText(entries, JsonLayout::kIndented) << '\n';
  } else if (line.names.empty()) {
    PrintList(list);
  } else {
    for (const pdfDescription* description : list) PrintDetails(*description);
  }
  return kExitSuccess;
}

}  // namespace zavhost
