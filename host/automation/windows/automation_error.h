#pragma once
// How members fail.

#include <windows.h>

#include <string_view>

namespace zavhost {

/// Excel's application-defined error 1004.
inline constexpr HRESULT kExcelError = static_cast<HRESULT>(0x800A03EC);
/// Excel is busy, such as while a cell is edited.
inline constexpr HRESULT kExcelBusy = static_cast<HRESULT>(0x800AC472);
/// The object of a deleted sheet, chart or name.
inline constexpr HRESULT kObjectGone = static_cast<HRESULT>(0x800401A8);

/// A member throws this. kExcelError and DISP_E_BADINDEX reach the caller as an exception; other
/// failures are the result of the call itself.
struct AutomationError {
  HRESULT status = kExcelError;
  /// A literal; null: what Excel says of such a member, "Unable to set the Formula property of the
  /// Range class".
  const char16_t* text = nullptr;
};

[[noreturn]] inline void Refuse(const char16_t* text = nullptr) {
  throw AutomationError{kExcelError, text};
}
/// "Subscript out of range".
[[noreturn]] inline void RefuseIndex() {
  throw AutomationError{DISP_E_BADINDEX, u"Invalid index."};
}
[[noreturn]] inline void RefuseType() { throw AutomationError{DISP_E_TYPEMISMATCH}; }

inline constexpr const char16_t* kCannotChangeArray = u"You can't change part of an array.";
inline constexpr const char16_t* kSheetIsProtected =
    u"The cell or chart you're trying to change is on a protected sheet. To make a change, "
    u"unprotect the sheet. You might be requested to enter a password.";
inline constexpr const char16_t* kBookIsProtected = u"Workbook is protected and cannot be changed.";
inline constexpr const char16_t* kWrongPassword =
    u"The password you supplied is not correct. Verify that the CAPS LOCK key is off and be sure "
    u"to "
    u"use the correct capitalization.";

}  // namespace zavhost
