#include "bindings/nonparametric_library.h"

#include <string>
#include <vector>

#include "bindings/companion_library.h"
#include "diagnostics/log_line.h"
#include "platform/message_box.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

struct Failure {
  std::u16string title;
  std::u16string text;
};
using Failures = std::vector<Failure>;

/// To the user, and to the log in any case.
void Report(const Failure& failure) {
  LogLine("{}: {}\n", Utf8FromUtf16(failure.title), Utf8FromUtf16(failure.text));
  ShowErrorBox(failure.title, failure.text);
}

/// Binds a library's functions one by one; after the first that is missing, which it notes among
/// the failures, it binds no more.
class Binding {
 public:
  Binding(CompanionLibrary& library, Failures& failures) : library_(library), failures_(failures) {}

  bool Load(const std::u16string& loader) {
    complete_ = library_.IsPresent();
    if (!complete_) failures_.push_back({loader, u"Could not load " + library_.path() + u"."});
    return complete_;
  }

  template <class Function>
  Binding& Bind(const char* name, Function*& function) {
    if (!complete_) return *this;
    function = AsFunction<Function>(library_.FindExport(name));
    if (function != nullptr) return *this;
    complete_ = false;
    library_.Release();
    failures_.push_back({u"NonparametricTests", u"The function " + Utf16FromUtf8(name) +
                                                    u" could not be found in " + library_.path()});
    return *this;
  }

  bool complete() const { return complete_; }

 private:
  CompanionLibrary& library_;
  Failures& failures_;
  bool complete_ = false;
};

bool BindTests(NonparametricFunctions& functions, Failures& failures) {
  Binding binding(NonparametricTestsLibrary(), failures);
  return binding.Load(u"NonparametricTestsLoadDll") &&
         binding.Bind("WSRExactPValMaxSample", functions.wsr_exact_largest)
             .Bind("WSRTiesAndSums", functions.wsr_ties_and_sums)
             .Bind("WSRpValue", functions.wsr_p_value)
             .Bind("MWUsingNormalApproximation", functions.mw_using_normal_approximation)
             .Bind("MWTiesAndSums", functions.mw_ties_and_sums)
             .Bind("MWpValue", functions.mw_p_value)
             .complete();
}

bool BindUtility(NonparametricFunctions& functions, Failures& failures) {
  Binding binding(EUtilityLibrary(), failures);
  return binding.Load(u"EUtilityLibraryLoadDll") &&
         binding.Bind("KWData", functions.kw_data)
             .Bind("KWpValue", functions.kw_p_value)
             .Bind("KWpValueComputationMethod", functions.kw_p_value_computation_method)
             .complete();
}

enum class Outcome { kUntried, kFailed, kBound };

// Excel's main thread only.
Outcome outcome = Outcome::kUntried;
NonparametricFunctions bound{};

/// The outcome stands before anything is shown: while a box is open Excel may calculate, and a
/// formula may come back here.
void BindAll() {
  outcome = Outcome::kFailed;  // also when an exception ends this
  Failures failures;
  const bool tests = BindTests(bound, failures);
  const bool utility = BindUtility(bound, failures);
  if (tests && utility) outcome = Outcome::kBound;
  for (const Failure& failure : failures) Report(failure);
}

}  // namespace

const NonparametricFunctions* NonparametricCompanions() {
  if (outcome == Outcome::kUntried) BindAll();
  return outcome == Outcome::kBound ? &bound : nullptr;
}

bool ExtensionIsPresent() { return NonparametricTestsLibrary().IsPresent(); }

}  // namespace zavrel
