#include "addin/nonparametric_library.h"

#include <optional>

#include "addin/companion_library.h"
#include "diagnostics/log_line.h"
#include "excel/wide_text.h"
#include "platform/message_box.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

/// To the user, and to the log in any case.
void Report(const std::u16string& title, const std::u16string& text) {
  LogLine("{}: {}\n", Utf8FromUtf16(title), Utf8FromUtf16(text));
  ShowErrorBox(title, text);
}

/// Binds a library's functions one by one; after the first that is missing, which it reports, it
/// binds no more.
class Binding {
 public:
  explicit Binding(CompanionLibrary& library) : library_(library) {}

  bool Load(const std::u16string& loader) {
    complete_ = library_.IsPresent();
    if (!complete_) Report(loader, u"Could not load " + library_.path() + u".");
    return complete_;
  }

  template <class Function>
  Binding& Bind(const char* name, Function*& function) {
    if (!complete_) return *this;
    function = AsFunction<Function>(library_.FindExport(name));
    if (function != nullptr) return *this;
    complete_ = false;
    Report(u"NonparametricTests",
           u"The function " + Utf16FromUtf8(name) + u" could not be found in " + library_.path());
    library_.Release();
    return *this;
  }

  bool complete() const { return complete_; }

 private:
  CompanionLibrary& library_;
  bool complete_ = false;
};

bool BindTests(NonparametricFunctions& functions) {
  Binding binding(NonparametricTestsLibrary());
  return binding.Load(u"NonparametricTestsLoadDll") &&
         binding.Bind("WSRExactPValMaxSample", functions.wsr_exact_largest)
             .Bind("WSRTiesAndSums", functions.wsr_ties_and_sums)
             .Bind("WSRpValue", functions.wsr_p_value)
             .Bind("MWUsingNormalApproximation", functions.mw_using_normal_approximation)
             .Bind("MWTiesAndSums", functions.mw_ties_and_sums)
             .Bind("MWpValue", functions.mw_p_value)
             .complete();
}

bool BindUtility(NonparametricFunctions& functions) {
  Binding binding(EUtilityLibrary());
  return binding.Load(u"EUtilityLibraryLoadDll") &&
         binding.Bind("KWData", functions.kw_data)
             .Bind("KWpValue", functions.kw_p_value)
             .Bind("KWpValueComputationMethod", functions.kw_p_value_computation_method)
             .complete();
}

std::optional<NonparametricFunctions> BindAll() {
  NonparametricFunctions functions{};
  const bool tests = BindTests(functions);
  const bool utility = BindUtility(functions);
  return tests && utility ? std::optional(functions) : std::nullopt;
}

}  // namespace

const NonparametricFunctions* NonparametricCompanions() {
  static const std::optional<NonparametricFunctions> bound = BindAll();
  return bound ? &*bound : nullptr;
}

bool ExtensionIsPresent() { return NonparametricTestsLibrary().IsPresent(); }

}  // namespace zavrel
