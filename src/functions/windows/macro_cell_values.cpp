// The entry points that a macro calls before and beside the worksheet functions that fill its
// arrays. functions.json gives the form of the strings.
#include <utility>

#include "contracts/message_ids.h"
#include "data/category_name.h"
#include "diagnostics/vek_exception.h"
#include "excel/coerce.h"
#include "excel/reference.h"
#include "excel/wide_text.h"
#include "frame/macro_call.h"
#include "frame/session.h"
#include "macros/macro_handshakes.h"
#include "macros/macro_memory.h"
#include "macros/windows/macro_variant.h"
#include "macros/windows/range_object.h"
#include "platform/export.h"

namespace zavrel {
namespace {

/// What VariantIdString returns in the place of an address: the worksheet functions refuse it.
constexpr std::uint64_t kNoAddress = ~std::uint64_t{0};

/// True for an argument that a macro has left out.
bool IsOmitted(const VARIANT* argument) {
  const VARIANT* const own = FollowReference(argument);
  return argument == nullptr ||
         (own != nullptr && own->vt == VT_ERROR && own->scode == DISP_E_PARAMNOTFOUND);
}

/// The text in a macro's VARIANT: a string, or a value that the system converts to one; empty for
/// an empty or omitted VARIANT.
std::u16string TextIn(const char* place, const VARIANT* designator) {
  if (designator == nullptr) return {};
  const auto value = CopyOf(designator);
  if (!value) throw VekExpectedString(place, messages::kMessageExpectedString);
  const VARIANT& held = value->get();
  if (IsOmitted(&held) || held.vt == VT_EMPTY || held.vt == VT_NULL) return {};
  OwnedVariant text;
  if (FAILED(VariantChangeType(text.address(), Unconst(held), 0, VT_BSTR)))
    throw VekExpectedString(place, messages::kMessageExpectedString);
  return std::u16string(BstrView(text.get().bstrVal));
}

/// The arrangement for a macro's VARIANTs, which must last beyond the call; `indices` may be left
/// out.
PendingCellValues Wanted(const char* place, CellElements elements, const VARIANT* values,
                         const VARIANT* indices = nullptr) {
  const std::uint64_t values_at = LastingAddress(values);
  const std::uint64_t indices_at = IsOmitted(indices) ? 0 : LastingAddress(indices);
  if (values_at == 0 || (indices_at == 0 && !IsOmitted(indices)))
    throw VekParameterError(place, messages::kMessageParameterError);
  return {std::move(elements), values_at, indices_at};
}

/// Enters the arrays under a new id and hands the id over. Without an open session the id is empty,
/// and there is no entry.
void Enter(const char* place, PendingCellValues wanted, BSTR* id) {
  if (!IsPlaceFor(id)) throw VekParameterError(place, messages::kMessageParameterError);
  Session* session = Session::Current();
  if (session == nullptr) return OwnedBstr::Ansi(u"").HandOver(id);
  MacroHandshakes& handshakes = session->Kept<MacroHandshakes>();
  OwnedBstr::Ansi(Utf16FromUtf8(handshakes.Enter(std::move(wanted)))).HandOver(id);
}

/// The category name of a range object's first cell; empty after any failure.
std::u16string NameOfFirstCell(const VARIANT* range) {
  const auto cell = FirstCellIn(range);
  if (!cell) return {};
  const OneArea reference(cell->sheet_id, cell->area);
  const ExcelResult value = LookUp(XXloper::FromArgument(&reference.record()));
  if (!value.ok()) return {};
  OrFailure<std::u16string> name = CategoryNameOf(SingleValueOf(value.value.record()));
  return name.ok() ? *std::move(name) : std::u16string();
}

}  // namespace

/// The address of the macro's VARIANT as a decimal text (ANSI) for the ...Private2 worksheet
/// functions. "-1", which they refuse with #VALUE!, if the VARIANT does not last beyond this call,
/// such as the one that stands for `Dim v() As Variant`, or the add-in is not open.
ZAV_EXPORT BSTR VariantIdString(const VARIANT* variant) {
  return MacroStatus<BSTR>("VariantIdString", nullptr, [&] {
    Session* session = Session::Current();
    const std::uint64_t address = session == nullptr ? 0 : LastingAddress(variant);
    const std::string digits = TextOfAddress(address != 0 ? address : kNoAddress);
    OwnedBstr text = OwnedBstr::Ansi(Utf16FromUtf8(digits));
    if (address != 0) session->Kept<MacroHandshakes>().Issue(address);
    return text.Release();
  });
}

/// Arranges that the next ZavGetCellValues writes the cells' values into `values` and, if `indices`
/// is given, their positions in the range, from 1, into that; its result is then the number of
/// cells. Replaces an earlier arrangement. Returns 0, or the number of the failure, after which
/// nothing new is arranged.
ZAV_EXPORT std::uint32_t ZavrelGetCellValuesSetArrayVB(const VARIANT* values,
                                                       const VARIANT* indices) {
  constexpr const char* kPlace = "ZavrelGetCellValuesSetArrayVB";
  return MacroCall(kPlace, [&] {
    PendingCellValues wanted = Wanted(kPlace, ValueElements{}, values, indices);
    if (Session* session = Session::Current())
      session->Kept<MacroHandshakes>().next_cell_values() = std::move(wanted);
  });
}

/// The same for the ZavGetCellValuesPrivate call that passes the `id` handed out here (ANSI).
/// Returns 0, or the number of the failure, after which nothing is arranged.
ZAV_EXPORT std::uint32_t ZavrelGetCellValuesSetArrayPrivateVB(const VARIANT* values,
                                                              const VARIANT* indices, BSTR* id) {
  constexpr const char* kPlace = "ZavrelGetCellValuesSetArrayPrivateVB";
  return MacroCall(kPlace,
                   [&] { Enter(kPlace, Wanted(kPlace, ValueElements{}, values, indices), id); });
}

/// The same for the cells' category names; `blank_name` for cells without one.
ZAV_EXPORT std::uint32_t ZavrelGetCellValuesCategorySetArrayPrivateVB(const VARIANT* values,
                                                                      const VARIANT* blank_name,
                                                                      BSTR* id) {
  constexpr const char* kPlace = "ZavrelGetCellValuesCategorySetArrayPrivateVB";
  return MacroCall(kPlace, [&] {
    Enter(kPlace, Wanted(kPlace, CategoryElements{TextIn(kPlace, blank_name)}, values), id);
  });
}

/// The same for the cells' numbers; `for_non_numbers` for cells that do not hold one.
ZAV_EXPORT std::uint32_t ZavrelGetCellValuesNumericSetArrayPrivateVB(const VARIANT* values,
                                                                     double for_non_numbers,
                                                                     BSTR* id) {
  constexpr const char* kPlace = "ZavrelGetCellValuesNumericSetArrayPrivateVB";
  return MacroCall(
      kPlace, [&] { Enter(kPlace, Wanted(kPlace, NumericElements{for_non_numbers}, values), id); });
}

/// The category name (ANSI) of a range object's first cell; empty if the argument does not hold a
/// range object or its cell cannot be read.
ZAV_EXPORT BSTR ZavrelGetCellValueCategory(const VARIANT* range) {
  return MacroStatus<BSTR>("ZavrelGetCellValueCategory", nullptr,
                           [&] { return OwnedBstr::Ansi(NameOfFirstCell(range)).Release(); });
}

/// Writes the same name as a wide string, including characters that the code page lacks, into
/// `name`. Returns 0, or the number of the failure if `name` could not be written.
ZAV_EXPORT std::uint32_t ZavrelGetCellValueCategoryW(const VARIANT* range, BSTR* name) {
  constexpr const char* kPlace = "ZavrelGetCellValueCategoryW";
  return MacroCall(kPlace, [&] {
    if (!IsPlaceFor(name)) throw VekParameterError(kPlace, messages::kMessageParameterError);
    OwnedBstr::Wide(NameOfFirstCell(range)).HandOver(name);
  });
}

}  // namespace zavrel
