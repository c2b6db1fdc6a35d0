#pragma once
// The value record and the constants of the Excel C API, as its public documentation defines them.
// The add-in and the host share this header.

#include <cstddef>
#include <cstdint>
#include <string_view>

// A code unit of the C API's texts, which are counted UTF-16 strings (element 0 holds the count).
using XCHAR = char16_t;

struct XLREF12 {
  std::int32_t rwFirst;
  std::int32_t rwLast;
  std::int32_t colFirst;
  std::int32_t colLast;
};

struct XLMREF12 {
  std::uint16_t count;
  XLREF12 reftbl[1];  // count areas
};

struct XLOPER12 {
  union {
    double num;
    XCHAR* str;
    std::int32_t xbool;
    std::int32_t err;
    std::int32_t w;
    struct {
      std::uint16_t count;
      XLREF12 ref;
    } sref;
    struct {
      XLMREF12* lpmref;
      std::uint64_t idSheet;
    } mref;
    struct {
      XLOPER12* lparray;
      std::int32_t rows;
      std::int32_t columns;
    } array;
    struct {
      union {
        std::int32_t level;
        std::int32_t tbctrl;
        std::uint64_t idSheet;
      } valflow;
      std::int32_t rw;
      std::int32_t col;
      std::uint8_t xlflow;
    } flow;
    struct {
      union {
        std::uint8_t* lpbData;
        void* hdata;
      } h;
      std::int32_t cbData;
    } bigdata;
  } val;
  std::uint32_t xltype;
};

static_assert(sizeof(XLREF12) == 16);
static_assert(offsetof(XLMREF12, reftbl) == 4);
static_assert(sizeof(XLOPER12) == 32);
static_assert(offsetof(XLOPER12, xltype) == 24);
static_assert(offsetof(XLOPER12, val.sref.ref) == 4);
static_assert(offsetof(XLOPER12, val.mref.idSheet) == 8);

// Value types: the low 12 bits of xltype.
inline constexpr std::uint32_t xltypeNum = 0x0001;
inline constexpr std::uint32_t xltypeStr = 0x0002;
inline constexpr std::uint32_t xltypeBool = 0x0004;
inline constexpr std::uint32_t xltypeRef = 0x0008;
inline constexpr std::uint32_t xltypeErr = 0x0010;
inline constexpr std::uint32_t xltypeFlow = 0x0020;
inline constexpr std::uint32_t xltypeMulti = 0x0040;
inline constexpr std::uint32_t xltypeMissing = 0x0080;
inline constexpr std::uint32_t xltypeNil = 0x0100;
inline constexpr std::uint32_t xltypeSRef = 0x0400;
inline constexpr std::uint32_t xltypeInt = 0x0800;
inline constexpr std::uint32_t xltypeBigData = xltypeStr | xltypeInt;
inline constexpr std::uint32_t xltypeMask = 0x0FFF;

// Memory flags: the high bits of xltype.
inline constexpr std::uint32_t xlbitXLFree = 0x1000;
inline constexpr std::uint32_t xlbitDLLFree = 0x4000;

/// The type bits of a record without the memory flags.
constexpr std::uint32_t TypeOf(const XLOPER12& record) { return record.xltype & xltypeMask; }

/// The counted text of a string record; empty for every other type or a null pointer.
constexpr std::u16string_view TextIn(const XLOPER12& record) {
  if (TypeOf(record) != xltypeStr || record.val.str == nullptr) return {};
  return {record.val.str + 1, record.val.str[0]};
}

// Error codes of xltypeErr.
inline constexpr std::int32_t xlerrNull = 0;
inline constexpr std::int32_t xlerrDiv0 = 7;
inline constexpr std::int32_t xlerrValue = 15;
inline constexpr std::int32_t xlerrRef = 23;
inline constexpr std::int32_t xlerrName = 29;
inline constexpr std::int32_t xlerrNum = 36;
inline constexpr std::int32_t xlerrNA = 42;
inline constexpr std::int32_t xlerrGettingData = 43;
inline constexpr std::int32_t xlerrSpill = 45;
inline constexpr std::int32_t xlerrConnect = 46;
inline constexpr std::int32_t xlerrBlocked = 47;
inline constexpr std::int32_t xlerrUnknown = 48;
inline constexpr std::int32_t xlerrField = 49;
inline constexpr std::int32_t xlerrCalc = 50;

// Return codes of the callback.
inline constexpr int xlretSuccess = 0;
inline constexpr int xlretAbort = 1;
inline constexpr int xlretInvXlfn = 2;
inline constexpr int xlretInvCount = 4;
inline constexpr int xlretInvXloper = 8;
inline constexpr int xlretStackOvfl = 16;
inline constexpr int xlretFailed = 32;
inline constexpr int xlretUncalced = 64;
inline constexpr int xlretNotThreadSafe = 128;
inline constexpr int xlretInvAsynchronousContext = 256;
inline constexpr int xlretNotClusterSafe = 512;

// Function numbers.
inline constexpr int xlSpecial = 0x4000;
inline constexpr int xlFree = 0 | xlSpecial;
inline constexpr int xlStack = 1 | xlSpecial;
inline constexpr int xlCoerce = 2 | xlSpecial;
inline constexpr int xlSet = 3 | xlSpecial;
inline constexpr int xlSheetId = 4 | xlSpecial;
inline constexpr int xlSheetNm = 5 | xlSpecial;
inline constexpr int xlAbort = 6 | xlSpecial;
inline constexpr int xlGetInst = 7 | xlSpecial;
inline constexpr int xlGetHwnd = 8 | xlSpecial;
inline constexpr int xlGetName = 9 | xlSpecial;
inline constexpr int xlEnableXLMsgs = 10 | xlSpecial;
inline constexpr int xlDisableXLMsgs = 11 | xlSpecial;
inline constexpr int xlGetInstPtr = 19 | xlSpecial;
inline constexpr int xlfSetName = 88;
inline constexpr int xlfCaller = 89;
inline constexpr int xlfRegister = 149;
inline constexpr int xlfCounta = 169;
inline constexpr int xlfGetWorkspace = 186;
inline constexpr int xlfUnregister = 201;

// The size of a worksheet and the longest text.
inline constexpr std::int32_t kExcelRows = 1048576;
inline constexpr std::int32_t kExcelColumns = 16384;
inline constexpr std::size_t kExcelTextLimit = 32767;

// The callback that an add-in calls: function number, argument count, arguments, result (may be
// null).
using Excel12Callback = int (*)(int function, int count, XLOPER12** arguments, XLOPER12* result);
