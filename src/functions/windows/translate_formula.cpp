// ZavrelTranslateFormulaVB: a formula from one language of Excel into another, for macros.
#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "frame/macro_call.h"
#include "functions/translated_formula.h"
#include "macros/macro_memory.h"
#include "platform/export.h"
#include "platform/library_identity.h"
#include "platform/windows/ole_owners.h"

namespace zavrel {

/// Writes the formula, translated from the language with the code `from` ("en", "de", or one with a
/// table beside the add-in) into the language `to`, into `translated`. `style` is the reference
/// style of both, xlA1 or xlR1C1. Returns 0, or the number of the failure, after which nothing has
/// been written.
ZAV_EXPORT std::uint32_t ZavrelTranslateFormulaVB(BSTR formula, BSTR from, BSTR to,
                                                  std::int32_t style, BSTR* translated) {
  constexpr const char* kPlace = "ZavrelTranslateFormulaVB";
  return MacroCall(kPlace, [&] {
    if (!IsPlaceFor(translated)) throw VekParameterError(kPlace, messages::kMessageParameterError);
    const std::u16string text =
        TranslatedFormula(kPlace, BstrView(formula), BstrView(from), BstrView(to), style,
                          LibraryIdentity::OfThisLibrary().folder());
    OwnedBstr::Wide(text).HandOver(translated);
  });
}

}  // namespace zavrel
