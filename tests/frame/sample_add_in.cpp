#include "frame/sample_add_in.h"

namespace zavrel {
namespace {

constexpr std::uint32_t kExtension = 1u << 5;
constexpr std::uint32_t kBoth = 1u << 5 | 1u << 7;
constexpr auto kStatistics = WizardCategory::kStatisticalFunctions;
constexpr auto kDistributions = WizardCategory::kDistributionFunctions;
constexpr TextReference kRepeat = TextReference::RepeatLast();

// Columns: applications, export, types, visible name, argument text, macro type, help topic,
// category, function help, argument helps.
constinit const RegistrationRow kFunctions[] = {
    {kAlwaysRegistered | 1u << 5, "Version", "J", "ZavVersion", "", 0, -1, kStatistics, "", {{""}}},
    {kBoth, "Mean", "PRRRR", "ZavMean", 1113, 1, 198, kStatistics, 1114, {{1115, kRepeat}}},
    {kBoth, "Pick", "CRPC%", "ZavPick", 1066, 1, 189, kStatistics, 1067, {{1068, "of all"}}},
    {kBoth, "Matrix", "PPR$", "ZavMatrix", 1550, 1, -1, kStatistics, 1555, {{1551, 1552, kRepeat}}},
    {kBoth, "Multi", "PIRP", "ZavMulti", "", 0, -1, kStatistics, "", {}},
    {kBoth, "Rand", "B!", "ZavRand", "", 1, 307, kStatistics, 1239, {}},
    {kBoth, "Normal", "PP", "ZavNormal", 1203, 1, 305, kDistributions, 1204, {}},
};
constinit const RegistrationRow kExtensionFunctions[] = {
    {kExtension, "Ties", "PRR", "ZavTies", "", 0, -1, kStatistics, "ties", {}},
    {kExtension, "RankSum", "PRR", "ZavRankSum", "", 0, -1, kStatistics, "sum", {}},
};

}  // namespace

std::span<const RegistrationRow> tests::SampleFunctions() { return kFunctions; }
std::span<const RegistrationRow> tests::SampleExtension() { return kExtensionFunctions; }

AddIn ThisAddIn() {
  static const FunctionTable tables[] = {{kFunctions}, {kExtensionFunctions, [] { return false; }}};
  return {.name = u"Sample", .title = u"Sample add-in", .tables = tables};
}

}  // namespace zavrel
