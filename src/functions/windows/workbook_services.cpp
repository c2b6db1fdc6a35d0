// Entry points for macros that work on open workbooks through Excel's object model: stored items,
// sheet protection, blocks of formulas, and analyses. Each returns 0, or the number of the failure;
// the workbook is then as it was.
#include <map>
#include <memory>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "frame/macro_call.h"
#include "frame/session.h"
#include "macros/macro_memory.h"
#include "macros/windows/double_array.h"
#include "macros/windows/macro_variant.h"
#include "platform/export.h"
#include "platform/utf.h"
#include "services/windows/analysis_run.h"
#include "services/windows/formula_block.h"
#include "services/windows/hidden_storage.h"
#include "services/windows/lifted_protection.h"
#include "services/windows/stored_variant.h"

namespace zavrel {
namespace {

using analyses::Language;
using services::HiddenStorage;

/// The wrapper of an object that a macro passes.
template <class Class>
Class ObjectFrom(IDispatch* object) {
  if (object == nullptr) {
    throw VekInvalidDataType(std::string(Class::kName), messages::kMessageInvalidDataType);
  }
  return Class(MsExcel::Object(object));
}

MsExcel::Range RangeFrom(const VARIANT* range) {
  const auto object = CopyOf(range);
  const bool is_object = object && object->get().vt == VT_DISPATCH;
  return ObjectFrom<MsExcel::Range>(is_object ? object->get().pdispVal : nullptr);
}

std::string Utf8Text(BSTR text) { return Utf8FromUtf16(BstrView(text)); }

Language SessionLanguage() {
  const Session* const session = Session::Current();
  const bool is_german = session != nullptr && PRIMARYLANGID(session->language_id()) == LANG_GERMAN;
  return is_german ? Language::kGerman : Language::kEnglish;
}

/// The sheets whose protection macros have lifted, by the numbers that they were given.
class LiftedProtections {
 public:
  std::int32_t Add(std::unique_ptr<services::LiftedProtection> lifted) {
    lifted_.emplace(++last_number_, std::move(lifted));
    return last_number_;
  }
  void PutBack(std::int32_t number) {
    const auto found = lifted_.find(number);
    if (found == lifted_.end())
      throw VekParameterError("ZavrelPutBackProtectionVB", messages::kMessageParameterError);
    found->second->PutBack();
    lifted_.erase(found);
  }

 private:
  std::int32_t last_number_ = 0;
  std::map<std::int32_t, std::unique_ptr<services::LiftedProtection>> lifted_;
};

/// Without a session there is nobody to keep them.
LiftedProtections& KeptProtections() {
  Session* const session = Session::Current();
  if (session == nullptr) throw VekParameterError("Session", messages::kMessageParameterError);
  return session->Kept<LiftedProtections>();
}

/// What a macro's array of formulas holds; a matrix of one dimension is a row.
MsExcel::Block FormulasIn(SAFEARRAY* array) {
  VARTYPE type = VT_EMPTY;
  const bool holds_variants = SUCCEEDED(SafeArrayGetVartype(array, &type)) && type == VT_VARIANT &&
                              array->cbElements == sizeof(VARIANT) && HasItsElements(array);
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_ARRAY | VT_VARIANT;
  variant.parray = array;
  const MsExcel::Block block = holds_variants ? MsExcel::BlockIn(variant) : MsExcel::Block{};
  if (block.values.empty())
    throw VekArraySizeError("ZavrelWriteFormulasVB", messages::kMessageArrayNotTwoDimensional);
  return block;
}

}  // namespace

/// Keeps a value in the workbook under a name, in place of an older one: a text, a number, a
/// two-dimensional array of doubles, or an array of bytes, up to 1 MB.
ZAV_EXPORT std::uint32_t ZavrelStoreInWorkbookVB(IDispatch* workbook, BSTR name,
                                                 const VARIANT* value) {
  return MacroCall("ZavrelStoreInWorkbookVB", [&] {
    HiddenStorage(ObjectFrom<MsExcel::Workbook>(workbook))
        .Store(BstrView(name), services::ItemIn(value));
  });
}

/// The value that the workbook keeps under a name; empty if there is none.
ZAV_EXPORT std::uint32_t ZavrelReadFromWorkbookVB(IDispatch* workbook, BSTR name, VARIANT* value) {
  return MacroCall("ZavrelReadFromWorkbookVB", [&] {
    services::StoreItem(HiddenStorage(ObjectFrom<MsExcel::Workbook>(workbook)).Read(BstrView(name)),
                        value);
  });
}

/// Removes what the workbook keeps under a name, if anything.
ZAV_EXPORT std::uint32_t ZavrelRemoveFromWorkbookVB(IDispatch* workbook, BSTR name) {
  return MacroCall("ZavrelRemoveFromWorkbookVB", [&] {
    HiddenStorage(ObjectFrom<MsExcel::Workbook>(workbook)).Remove(BstrView(name));
  });
}

/// Lifts the protection of a sheet. `number` is for ZavrelPutBackProtectionVB.
ZAV_EXPORT std::uint32_t ZavrelLiftProtectionVB(IDispatch* sheet, BSTR password, VARIANT* number) {
  return MacroCall("ZavrelLiftProtectionVB", [&] {
    LiftedProtections& kept = KeptProtections();
    services::StoreItem(0.0, number);  // there is a place for it, or nothing is lifted
    services::StoreItem(
        0.0 + kept.Add(std::make_unique<services::LiftedProtection>(
                  ObjectFrom<MsExcel::Worksheet>(sheet), std::u16string(BstrView(password)))),
        number);
  });
}

/// Protects the sheet as it was before, with the same password.
ZAV_EXPORT std::uint32_t ZavrelPutBackProtectionVB(std::int32_t number) {
  return MacroCall("ZavrelPutBackProtectionVB", [&] { KeptProtections().PutBack(number); });
}

/// Writes a two-dimensional array of VARIANTs from the range's first cell on: numbers, truth
/// values, texts, and formulas in English that begin with "=".
ZAV_EXPORT std::uint32_t ZavrelWriteFormulasVB(const VARIANT* range, SAFEARRAY** formulas) {
  return MacroCall("ZavrelWriteFormulasVB", [&] {
    services::WriteFormulas(RangeFrom(range), {FormulasIn(ArrayAt(formulas)), {}});
  });
}

/// Enters an array formula of any length into the range, which it fills.
ZAV_EXPORT std::uint32_t ZavrelWriteArrayFormulaVB(const VARIANT* range, BSTR formula) {
  return MacroCall("ZavrelWriteArrayFormulaVB", [&] {
    const MsExcel::Range cells = RangeFrom(range);
    const auto rows = static_cast<std::size_t>(cells.RowCount());
    const auto columns = static_cast<std::size_t>(cells.ColumnCount());
    services::WriteFormulas(cells, {MsExcel::Block(rows, columns),
                                    {{0, 0, rows, columns, std::u16string(BstrView(formula))}}});
  });
}

/// Adds the sheet of an analysis of the range behind its own. `by` is the name of the column that
/// divides the rows into groups, or null.
ZAV_EXPORT std::uint32_t ZavrelRunAnalysisVB(const VARIANT* range, BSTR analysis, BSTR by) {
  return MacroCall("ZavrelRunAnalysisVB", [&] {
    services::AnalysisRun(Utf8Text(analysis), SessionLanguage())
        .Run(RangeFrom(range), Utf8Text(by));
  });
}

/// The same with data that the user is asked for. Does nothing if he cancels.
ZAV_EXPORT std::uint32_t ZavrelAskForAnalysisVB(IDispatch* excel_application, BSTR analysis) {
  return MacroCall("ZavrelAskForAnalysisVB", [&] {
    services::AnalysisRun(Utf8Text(analysis), SessionLanguage())
        .Ask(ObjectFrom<MsExcel::Application>(excel_application));
  });
}

/// Repeats the latest analysis of the workbook, on the same cells.
ZAV_EXPORT std::uint32_t ZavrelRepeatAnalysisVB(IDispatch* workbook) {
  return MacroCall("ZavrelRepeatAnalysisVB", [&] {
    services::RepeatAnalysis(ObjectFrom<MsExcel::Workbook>(workbook), SessionLanguage());
  });
}

/// The menu of the analyses for the ribbon, as the XML of a dynamic menu.
ZAV_EXPORT std::uint32_t ZavrelAnalysesMenuVB(BSTR* menu) {
  return MacroCall("ZavrelAnalysesMenuVB", [&] {
    if (!IsPlaceFor(menu))
      throw VekParameterError("ZavrelAnalysesMenuVB", messages::kMessageParameterError);
    OwnedBstr::Wide(services::AnalysesMenu(SessionLanguage())).HandOver(menu);
  });
}

}  // namespace zavrel
