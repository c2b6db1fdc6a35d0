#pragma once
// The ids of the message library that code uses by name. The texts of the function wizard are named
// by their numbers in the registration tables: 400 to 411 the categories, 1066 to 1595 argument
// texts, function helps and argument helps.
//
// A comment behind an id says what its placeholders {1}, {2}, ... stand for, in this order.

#include <cstdint>

namespace zavrel::messages {

/// Title of error boxes.
inline constexpr std::int32_t kMessageTitle = 2400;
/// The add-in could not be started at all.
inline constexpr std::int32_t kMessageStartFailed = 2401;  // component
/// The add-in works, but something of it could not be started and is missing.
inline constexpr std::int32_t kMessageStartedPartly = 2402;  // component

/// The dialog that shows the progress of long work.
inline constexpr std::int32_t kMessageCancel = 2410;      // its button
inline constexpr std::int32_t kMessageCancelling = 2411;  // after the button is pressed
inline constexpr std::int32_t kMessageShare = 2412;       // percentage

/// One for each member of the exception family, in its alphabetical order.
inline constexpr std::int32_t kMessageArraySizeError = 2500;
inline constexpr std::int32_t kMessageCantAddWorksheet = 2501;
inline constexpr std::int32_t kMessageCantReadCellValue = 2502;            // cell
inline constexpr std::int32_t kMessageCantRenameWorksheet = 2503;          // old name, new name
inline constexpr std::int32_t kMessageCantWriteCellValue = 2504;           // cell
inline constexpr std::int32_t kMessageCellPartOfArrayFormula = 2505;       // cell
inline constexpr std::int32_t kMessageDataStoredInWorkbookInvalid = 2506;  // workbook
inline constexpr std::int32_t kMessageDistributionArgsBad = 2507;          // distribution
inline constexpr std::int32_t kMessageDllLoadError = 2508;                 // path of the library
inline constexpr std::int32_t kMessageErrorOpeningFile = 2509;             // path of the file
inline constexpr std::int32_t kMessageErrorReadingFile = 2510;             // path of the file
inline constexpr std::int32_t kMessageErrorSeekingFile = 2511;             // path of the file
inline constexpr std::int32_t kMessageErrorWritingFile = 2512;             // path of the file
inline constexpr std::int32_t kMessageExcelCellFormulaReadError = 2513;    // cell
inline constexpr std::int32_t kMessageExcelCellFormulaWriteError = 2514;   // cell
inline constexpr std::int32_t kMessageExcelUnsupportedMethodCall = 2515;   // method
inline constexpr std::int32_t kMessageExcelWorksheetProtectedCellHidden = 2516;  // worksheet, cell
inline constexpr std::int32_t kMessageExcelWorksheetProtectedCellLocked = 2517;  // worksheet, cell
inline constexpr std::int32_t kMessageExcelWorksheetProtected = 2518;            // worksheet
inline constexpr std::int32_t kMessageException = 2519;
inline constexpr std::int32_t kMessageExpectedString = 2520;
inline constexpr std::int32_t kMessageFileError = 2521;  // path of the file
inline constexpr std::int32_t kMessageInvalidDataType = 2522;
inline constexpr std::int32_t kMessageInvalidDirectory = 2523;         // path of the folder
inline constexpr std::int32_t kMessageInvalidP = 2524;                 // probability
inline constexpr std::int32_t kMessageInvalidPercentileMethod = 2525;  // method
inline constexpr std::int32_t kMessageInvalidQelDistribution = 2526;   // distribution
inline constexpr std::int32_t kMessageKernelObjectError = 2527;        // object, Windows error code
inline constexpr std::int32_t kMessageMatrixNotSquare = 2528;          // rows, columns
// row and column (from 1), value there, value at the mirrored place
inline constexpr std::int32_t kMessageMatrixNotSymmetric = 2529;
inline constexpr std::int32_t kMessageNoConvergence = 2530;
inline constexpr std::int32_t kMessageOutOfMemory = 2531;
inline constexpr std::int32_t kMessageParameterError = 2532;
inline constexpr std::int32_t kMessageRegKeyCreateFailed = 2533;     // key
inline constexpr std::int32_t kMessageRegKeyEnumFailed = 2534;       // key
inline constexpr std::int32_t kMessageRegKeyOpenFailed = 2535;       // key
inline constexpr std::int32_t kMessageRegValueDeleteFailed = 2536;   // key, value
inline constexpr std::int32_t kMessageRegValueReadFailed = 2537;     // key, value
inline constexpr std::int32_t kMessageRegValueWriteFailed = 2538;    // key, value
inline constexpr std::int32_t kMessageSecurityFunctionError = 2539;  // function, Windows error code
inline constexpr std::int32_t kMessageUnknownException = 2540;
inline constexpr std::int32_t kMessageUserCancelled = 2541;
inline constexpr std::int32_t kMessageXlSetFailed = 2542;

/// The kinds that are thrown only as one of the kinds above.
inline constexpr std::int32_t kMessageDiskError = 2543;
inline constexpr std::int32_t kMessageExcelError = 2544;
inline constexpr std::int32_t kMessageRegKeyError = 2545;
inline constexpr std::int32_t kMessageSafeArrayError = 2546;
inline constexpr std::int32_t kMessageWindowsError = 2547;

/// Particular failures of the kinds above.
inline constexpr std::int32_t kMessageArrayNotTwoDimensional = 2600;  // VekArraySizeError
inline constexpr std::int32_t kMessageArraySizesDiffer = 2601;        // VekArraySizeError
inline constexpr std::int32_t kMessageArrayServiceFailed = 2602;      // VekArraySizeError
inline constexpr std::int32_t kMessageEigenInvalidValues = 2603;      // VekInvalidDataType
inline constexpr std::int32_t kMessageEigenNoConvergence = 2604;      // VekNoConvergence
// VekDllLoadError: function, path of the library
inline constexpr std::int32_t kMessageFunctionNotFound = 2605;
inline constexpr std::int32_t kMessageValuesNotFinite = 2606;  // VekInvalidDataType
inline constexpr std::int32_t kMessageExcelCallFailed = 2620;  // member, Excel's own text
inline constexpr std::int32_t kMessageExcelBusy = 2621;
inline constexpr std::int32_t kMessageStructureProtected = 2622;  // VekCantAddWorksheet: workbook
inline constexpr std::int32_t kMessageItemCannotBeStored = 2623;  // VekParameterError: name
inline constexpr std::int32_t kMessageAnalysisImpossible = 2624;  // analysis, reason
inline constexpr std::int32_t kMessageNoAnalysisToRepeat = 2625;  // VekAnalysisImpossible: workbook

}  // namespace zavrel::messages
