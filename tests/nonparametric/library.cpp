#include "nonparametric/library.h"

#include <filesystem>
#include <optional>

#include "platform/module.h"

namespace zavrel::tests {
namespace {

template <class Function>
Function* Entry(const char* file, const char* name, Function*) {
  static std::optional<Module> modules[2];
  std::optional<Module>& module = modules[name[0] == 'K' ? 1 : 0];
  if (!module) module = Module::Load(std::filesystem::absolute(file));
  return module ? AsFunction<Function>(module->FindExport(name)) : nullptr;
}
#define TESTS_ENTRY(name) \
  Entry(NONPARAMETRIC_TESTS_FILE, #name, static_cast<decltype(&::name)>(nullptr))
#define UTILITY_ENTRY(name) Entry(EUTILITY_FILE, #name, static_cast<decltype(&::name)>(nullptr))

}  // namespace

const Libraries library = {
    TESTS_ENTRY(WSRExactPValMaxSample),
    TESTS_ENTRY(WSRTiesAndSums),
    TESTS_ENTRY(WSRpValue),
    TESTS_ENTRY(MWUsingNormalApproximation),
    TESTS_ENTRY(MWTiesAndSums),
    TESTS_ENTRY(MWpValue),
    UTILITY_ENTRY(KWData),
    UTILITY_ENTRY(KWpValue),
    UTILITY_ENTRY(KWpValueComputationMethod),
};

}  // namespace zavrel::tests
