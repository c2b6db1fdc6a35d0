#pragma once
// The family of all failures that the suite's libraries throw; each library has the whole family.
// They are thrown and caught by value; callers catch them by kind. The members differ only in their
// class and its name.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/variant_copies.h"

namespace zavrel {

/// A value to insert into a message text.
using MessageArgument = std::variant<std::int64_t, double, std::u16string>;
using MessageArguments = std::vector<MessageArgument>;

inline constexpr std::int32_t kNoMessage = -1;

/// Root of the family.
class VekException {
 public:
  /// A failure without details: both names are empty, and there is no message.
  VekException() = default;
  /// `place` is the operation that failed, "ClassName::MethodName". `message_id` is the number of
  /// the message in the message library, and `arguments` replace its placeholders {1}, {2}, ...
  explicit VekException(std::string_view place, std::int32_t message_id = kNoMessage,
                        MessageArguments arguments = {})
      : VekException(ClassName{u"VekException"}, place, message_id, std::move(arguments)) {}

  const std::u16string& class_name() const { return class_name_; }
  const std::string& place() const { return place_; }
  std::int32_t message_id() const { return message_id_; }
  const MessageArguments& arguments() const { return arguments_; }

 protected:
  struct ClassName {
    std::u16string_view text;
  };
  VekException(ClassName class_name, std::string_view place, std::int32_t message_id,
               MessageArguments arguments)
      : class_name_(class_name.text),
        place_(place),
        message_id_(message_id),
        arguments_(std::move(arguments)) {}

 private:
  std::u16string class_name_;
  std::string place_;
  std::int32_t message_id_ = kNoMessage;
  MessageArguments arguments_;
};

// A kind that callers catch; only its members are thrown.
#define ZAV_VEK_KIND(name, base)                                                \
  class name : public base {                                                    \
   protected:                                                                   \
    name(ClassName class_name, std::string_view place, std::int32_t message_id, \
         MessageArguments arguments)                                            \
        : base(class_name, place, message_id, std::move(arguments)) {}          \
  }

// A member, which passes on its own name and inherits the root's constructor.
#define ZAV_VEK_MEMBER(name, base)                                               \
  class name : public base {                                                     \
   public:                                                                       \
    explicit name(std::string_view place, std::int32_t message_id = kNoMessage,  \
                  MessageArguments arguments = {})                               \
        : base(ClassName{u"" #name}, place, message_id, std::move(arguments)) {} \
                                                                                 \
   protected:                                                                    \
    name(ClassName class_name, std::string_view place, std::int32_t message_id,  \
         MessageArguments arguments)                                             \
        : base(class_name, place, message_id, std::move(arguments)) {}           \
  }

ZAV_VEK_KIND(VekDiskError, VekException);
ZAV_VEK_MEMBER(VekErrorOpeningFile, VekDiskError);
ZAV_VEK_MEMBER(VekErrorReadingFile, VekDiskError);
ZAV_VEK_MEMBER(VekErrorSeekingFile, VekDiskError);
ZAV_VEK_MEMBER(VekErrorWritingFile, VekDiskError);
ZAV_VEK_MEMBER(VekInvalidDirectory, VekDiskError);

ZAV_VEK_KIND(VekExcelError, VekException);
ZAV_VEK_MEMBER(VekCantAddWorksheet, VekExcelError);
ZAV_VEK_MEMBER(VekCantReadCellValue, VekExcelError);
ZAV_VEK_MEMBER(VekCantRenameWorksheet, VekExcelError);
ZAV_VEK_MEMBER(VekCantWriteCellValue, VekExcelError);
ZAV_VEK_MEMBER(VekCellPartOfArrayFormula, VekExcelError);
ZAV_VEK_MEMBER(VekDataStoredInWorkbookInvalid, VekExcelError);
ZAV_VEK_MEMBER(VekExcelBusy, VekExcelError);
ZAV_VEK_MEMBER(VekExcelCallFailed, VekExcelError);
ZAV_VEK_MEMBER(VekExcelCellFormulaReadError, VekExcelError);
ZAV_VEK_MEMBER(VekExcelCellFormulaWriteError, VekExcelError);
ZAV_VEK_MEMBER(VekExcelUnsupportedMethodCall, VekExcelError);
ZAV_VEK_MEMBER(VekExcelWorksheetProtected, VekExcelError);
ZAV_VEK_MEMBER(VekExcelWorksheetProtectedCellHidden, VekExcelWorksheetProtected);
ZAV_VEK_MEMBER(VekExcelWorksheetProtectedCellLocked, VekExcelWorksheetProtected);
ZAV_VEK_MEMBER(VekxlSetFailed, VekExcelError);

ZAV_VEK_MEMBER(VekParameterError, VekException);
ZAV_VEK_MEMBER(VekInvalidP, VekParameterError);
ZAV_VEK_MEMBER(VekInvalidPercentileMethod, VekParameterError);
ZAV_VEK_MEMBER(VekInvalidQelDistribution, VekParameterError);
ZAV_VEK_MEMBER(VekMatrixNotSquare, VekParameterError);
ZAV_VEK_MEMBER(VekMatrixNotSymmetric, VekParameterError);

ZAV_VEK_KIND(VekRegKeyError, VekException);
ZAV_VEK_MEMBER(VekRegKeyCreateFailed, VekRegKeyError);
ZAV_VEK_MEMBER(VekRegKeyEnumFailed, VekRegKeyError);
ZAV_VEK_MEMBER(VekRegKeyOpenFailed, VekRegKeyError);
ZAV_VEK_MEMBER(VekRegValueDeleteFailed, VekRegKeyError);
ZAV_VEK_MEMBER(VekRegValueReadFailed, VekRegKeyError);
ZAV_VEK_MEMBER(VekRegValueWriteFailed, VekRegKeyError);

ZAV_VEK_KIND(VekSafeArrayError, VekException);
ZAV_VEK_MEMBER(VekArraySizeError, VekSafeArrayError);
ZAV_VEK_MEMBER(VekExpectedString, VekSafeArrayError);

ZAV_VEK_KIND(VekWindowsError, VekException);
ZAV_VEK_MEMBER(VekDllLoadError, VekWindowsError);
ZAV_VEK_MEMBER(VekFileError, VekWindowsError);
ZAV_VEK_MEMBER(VekSecurityFunctionError, VekWindowsError);

ZAV_VEK_MEMBER(VekAnalysisImpossible, VekException);
ZAV_VEK_MEMBER(VekDistributionArgsBad, VekException);
ZAV_VEK_MEMBER(VekInvalidDataType, VekException);
ZAV_VEK_MEMBER(VekKernelObjectError, VekException);
ZAV_VEK_MEMBER(VekNoConvergence, VekException);
ZAV_VEK_MEMBER(VekOutOfMemory, VekException);
ZAV_VEK_MEMBER(VekUnknownException, VekException);
ZAV_VEK_MEMBER(VekUserCancelled, VekException);

#undef ZAV_VEK_KIND
#undef ZAV_VEK_MEMBER

}  // namespace zavrel
