// The protection of a worksheet.
#include "host/automation/password_hash.h"
#include "host/automation/windows/worksheet.h"

namespace zavhost {
namespace {

class Protection final : public SheetObject<Protection> {
 public:
  static constexpr std::u16string_view kName = u"Protection";
  static std::span<const Member<Protection>> Members();
  using SheetObject::SheetObject;
};

template <SheetPermission kPermission>
constexpr Member<Protection> Permission(std::u16string_view name) {
  return {name, kProperty, "", [](Protection& self, const Arguments&) -> Variant {
            return self.sheet().protection.permissions[kPermission];
          }};
}

constexpr Member<Protection> kProtectionMembers[] = {
    Permission<kFormattingCells>(u"AllowFormattingCells"),
    Permission<kFormattingColumns>(u"AllowFormattingColumns"),
    Permission<kFormattingRows>(u"AllowFormattingRows"),
    Permission<kInsertingColumns>(u"AllowInsertingColumns"),
    Permission<kInsertingRows>(u"AllowInsertingRows"),
    Permission<kInsertingHyperlinks>(u"AllowInsertingHyperlinks"),
    Permission<kDeletingColumns>(u"AllowDeletingColumns"),
    Permission<kDeletingRows>(u"AllowDeletingRows"),
    Permission<kSorting>(u"AllowSorting"),
    Permission<kFiltering>(u"AllowFiltering"),
    Permission<kUsingPivotTables>(u"AllowUsingPivotTables"),
};

std::span<const Member<Protection>> Protection::Members() { return kProtectionMembers; }

/// Arguments that are left out have Excel's documented defaults, also on a sheet that is protected
/// already: its password stays if none is given.
Variant Protect(WorksheetObject& self, const Arguments& given) {
  constexpr std::size_t kFirstPermission = 5;
  SheetProtection& protection = self.sheet().protection;
  if (given.Has(0) && (!protection.IsAny() || protection.password == 0))
    protection.password = PasswordHash(given.Text(0));
  protection.of_drawing_objects = given.Boolean(1, true);
  protection.of_contents = given.Boolean(2, true);
  protection.of_scenarios = given.Boolean(3, true);
  protection.is_for_users_only = given.Boolean(4);
  for (std::size_t i = 0; i < kPermissionCount; ++i)
    protection.permissions[i] = given.Boolean(kFirstPermission + i);
  self.book().is_saved = false;
  return {};
}

Variant Unprotect(WorksheetObject& self, const Arguments& given) {
  SheetProtection& protection = self.sheet().protection;
  if (!protection.IsAny()) return {};
  if (protection.password != PasswordHash(given.Text(0))) Refuse(kWrongPassword);
  protection = {};
  self.book().is_saved = false;
  return {};
}

template <bool SheetProtection::*kPart>
constexpr Member<WorksheetObject> IsProtected(std::u16string_view name) {
  return {name, kProperty, "", [](WorksheetObject& self, const Arguments&) -> Variant {
            return self.sheet().protection.*kPart;
          }};
}

constexpr Member<WorksheetObject> kMembers[] = {
    IsProtected<&SheetProtection::of_contents>(u"ProtectContents"),
    IsProtected<&SheetProtection::of_drawing_objects>(u"ProtectDrawingObjects"),
    IsProtected<&SheetProtection::of_scenarios>(u"ProtectScenarios"),
    IsProtected<&SheetProtection::is_for_users_only>(u"ProtectionMode"),
    {u"Protection", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       return MakeBeside<Protection>(self);
     }},
    {u"EnableSelection", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       return self.sheet().enable_selection;
     },
     'i',
     [](WorksheetObject& self, const Arguments& given) {
       constexpr std::int32_t kUnlockedCells = 1, kNoSelection = -4142, kNoRestrictions = 0;
       const std::int32_t mode = given.integer();
       if (mode != kUnlockedCells && mode != kNoSelection && mode != kNoRestrictions) Refuse();
       self.sheet().enable_selection = mode;
     }},
    {u"Protect", kMethod,
     "Password?s DrawingObjects?b Contents?b Scenarios?b UserInterfaceOnly?b "
     "AllowFormattingCells?b AllowFormattingColumns?b AllowFormattingRows?b "
     "AllowInsertingColumns?b AllowInsertingRows?b AllowInsertingHyperlinks?b "
     "AllowDeletingColumns?b AllowDeletingRows?b AllowSorting?b AllowFiltering?b "
     "AllowUsingPivotTables?b",
     Protect},
    {u"Unprotect", kMethod, "Password?s", Unprotect},
};

}  // namespace

std::span<const Member<WorksheetObject>> WorksheetProtectionMembers() { return kMembers; }

}  // namespace zavhost
