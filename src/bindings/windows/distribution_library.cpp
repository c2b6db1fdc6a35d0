#include "bindings/distribution_library.h"

#include <optional>

#include "bindings/companion_library.h"
#include "diagnostics/log_line.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

/// False, after a line in the log, when the library has no such function.
template <class Function>
bool Bind(CompanionLibrary& library, const char* name, Function*& function) {
  function = AsFunction<Function>(library.FindExport(name));
  if (function != nullptr) return true;
  LogLine("The function {} could not be found in {}.\n", name, Utf8FromUtf16(library.path()));
  return false;
}

std::optional<DistributionFunctions> BindAll() {
  CompanionLibrary& library = DistributionsLibrary();
  if (!library.IsPresent()) {
    LogLine("Could not load {}.\n", Utf8FromUtf16(library.path()));
    return std::nullopt;
  }
  DistributionFunctions functions{};
  const bool complete = Bind(library, "pdfNormal", functions.normal) &&
                        Bind(library, "pdfStudent", functions.student) &&
                        Bind(library, "pdfChisq", functions.chisq) &&
                        Bind(library, "pdfF", functions.f) &&
                        Bind(library, "pdfBinomial", functions.binomial);
  return complete ? std::optional(functions) : std::nullopt;
}

}  // namespace

const DistributionFunctions* DistributionCompanion() {
  static const std::optional<DistributionFunctions> bound = BindAll();
  return bound ? &*bound : nullptr;
}

}  // namespace zavrel
