// Functions that behave.
#include <cctype>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "planted_faults/planted.h"

using namespace planted;

namespace {

double SumOf(const XLOPER12& value) {
  if (value.xltype == xltypeNum) return value.val.num;
  if (value.xltype != xltypeMulti) return 0;
  double sum = 0;
  const int size = value.val.array.rows * value.val.array.columns;
  for (int i = 0; i < size; ++i) {
    if (value.val.array.lparray[i].xltype == xltypeNum) sum += value.val.array.lparray[i].val.num;
  }
  return sum;
}

double SumOfArgument(const XLOPER12* argument) {
  XLOPER12 cells;
  if (Call(xlCoerce, {argument}, &cells) != xlretSuccess) return -1;
  const double sum = SumOf(cells);
  Free(cells);
  return sum;
}

std::u16string Wide(const std::string& text) { return {text.begin(), text.end()}; }

std::string RangeText(const XLREF12& area) {
  return std::to_string(area.rwFirst) + "," + std::to_string(area.colFirst) + ":" +
         std::to_string(area.rwLast) + "," + std::to_string(area.colLast);
}

std::string Describe(const XLOPER12& value) {
  switch (value.xltype) {
    case xltypeNum:
      return "number";
    case xltypeStr:
      return "text of " + std::to_string(value.val.str[0]);
    case xltypeBool:
      return "boolean";
    case xltypeErr:
      return "error " + std::to_string(value.val.err);
    case xltypeMissing:
      return "missing";
    case xltypeNil:
      return "nil";
    case xltypeMulti:
      return std::to_string(value.val.array.rows) + "x" + std::to_string(value.val.array.columns) +
             " of " + Describe(value.val.array.lparray[0]);
    case xltypeSRef:
      return "sref " + RangeText(value.val.sref.ref);
    case xltypeRef: {
      std::string text = "ref";
      for (int i = 0; i < value.val.mref.lpmref->count; ++i)
        text += " " + RangeText(value.val.mref.lpmref->reftbl[i]);
      return text;
    }
    default:
      return "type " + std::to_string(value.xltype);
  }
}

XLOPER12* ReturnText(const std::string& text) { return Return(Text(Wide(text))); }

int live_results = 0;

}  // namespace

PLANTED("BU", double, GoodSum, XLOPER12* argument) { return SumOfArgument(argument); }
PLANTED("BU#", double, GoodMacroSum, XLOPER12* argument) { return SumOfArgument(argument); }
PLANTED("BUU", double, GoodSumTwice, XLOPER12* a, XLOPER12* b) {
  return SumOfArgument(a) + SumOfArgument(b);
}

PLANTED("BBIJBAHBJBBBBB", double, GoodMix, double a, short b, int c, double d, short e,
        unsigned short f, double g, int h, double i, double j, double k, double l, double m) {
  return a + 2 * b + 3 * c + 4 * d + 5 * e + 6 * f + 7 * g + 8 * h + 9 * i + 10 * j + 11 * k +
         12 * l + 13 * m;
}

PLANTED("BBBBBBBBBBBBBBBBBBBBBBBBBBBBBBB", double, GoodMany, double a, double b, double c, double d,
        double e, double f, double g, double h, double i, double j, double k, double l, double m,
        double n, double o, double p, double q, double r, double s, double t, double u, double v,
        double w, double x, double y, double z, double aa, double ab, double ac, double ad) {
  const double all[] = {a, b, c, d, e, f, g, h, i, j, k, l,  m,  n,  o,
                        p, q, r, s, t, u, v, w, x, y, z, aa, ab, ac, ad};
  double sum = 0;
  for (int index = 0; index < 30; ++index) sum += (index + 1) * all[index];
  return sum;
}

PLANTED("C%C%", const XCHAR*, GoodWide, const XCHAR* text) {
  static std::u16string result;
  result = text;
  result += u'!';
  return result.c_str();
}

PLANTED("CC", const char*, GoodNarrow, const char* text) {
  static std::string result;
  result = std::string(text) + "!";
  return result.c_str();
}

namespace {

template <class Unit>
const Unit* Reversed(const Unit* text) {
  static Unit result[256];
  result[0] = text[0];
  for (int i = 0; i < text[0]; ++i) result[1 + i] = text[text[0] - i];
  return result;
}

}  // namespace

PLANTED("D%D%", const XCHAR*, GoodCountedWide, const XCHAR* text) { return Reversed(text); }
PLANTED("DD", const unsigned char*, GoodCounted, const unsigned char* text) {
  return Reversed(text);
}

PLANTED("BELMN", double, GoodPointers, const double* a, const short* b, const short* c,
        const int* d) {
  return *a + 10 * *b + 100 * *c + 1000 * *d;
}

PLANTED("1F%", void, GoodInPlaceText, XCHAR* text) {
  for (; *text != 0; ++text) *text = static_cast<XCHAR>(std::toupper(*text));
}
PLANTED("1G", void, GoodInPlaceCounted, unsigned char* text) { --text[0]; }
PLANTED("1G%", void, GoodInPlaceCountedWide, XCHAR* text) { --text[0]; }
PLANTED("1E", void, GoodInPlaceNumber, double* number) { *number *= 2; }
PLANTED(">F", void, GoodVoid, char* text) { std::strcat(text, " more"); }

struct NumberArray {
  std::int32_t rows;
  std::int32_t columns;
  double numbers[1];
};

PLANTED("K%K%", const void*, GoodTranspose, const NumberArray* source) {
  static std::vector<double> storage;
  const auto rows = static_cast<std::size_t>(source->rows);
  const auto columns = static_cast<std::size_t>(source->columns);
  storage.assign(1 + rows * columns, 0);
  const std::int32_t dimensions[] = {source->columns, source->rows};
  std::memcpy(storage.data(), dimensions, sizeof dimensions);
  const double* numbers = source->numbers;
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < columns; ++column)
      storage[1 + column * rows + row] = *numbers++;
  }
  return storage.data();
}

PLANTED("BK", double, GoodSmallSum, const std::uint16_t* array) {
  double sum = 0;
  for (std::size_t i = 0; i < std::size_t{array[0]} * array[1]; ++i) {
    double number;
    std::memcpy(&number, reinterpret_cast<const char*>(array) + 8 + 8 * i, sizeof number);
    sum += number;
  }
  return sum;
}

PLANTED("QQ", XLOPER12*, GoodDescribe, XLOPER12* value) { return ReturnText(Describe(*value)); }
PLANTED("QU", XLOPER12*, GoodDescribeU, XLOPER12* value) { return ReturnText(Describe(*value)); }

PLANTED("Q", XLOPER12*, GoodDllFree) {
  auto result = std::make_unique<XLOPER12>(Number(++live_results));
  result->xltype |= xlbitDLLFree;
  return result.release();
}
PLANTED_EXPORT void xlAutoFree12(XLOPER12* value) {
  --live_results;
  const std::unique_ptr<XLOPER12> freed(value);
}

PLANTED("QU", XLOPER12*, GoodXlFree, XLOPER12* argument) {
  XLOPER12 cells;
  Call(xlCoerce, {argument}, &cells);
  cells.xltype |= xlbitXLFree;
  return Return(cells);
}

PLANTED("AA", short, GoodBoolean, short value) { return value == 1 ? 0 : 1; }
PLANTED("II", short, GoodShort, short value) { return static_cast<short>(-value); }
PLANTED("HH", unsigned short, GoodUnsigned, unsigned short value) { return value; }
PLANTED("JJ", int, GoodInteger, int value) { return -value; }

PLANTED("BJ", double, GoodSpecial, int which) {
  switch (which) {
    case 0:
      return std::numeric_limits<double>::infinity();
    case 1:
      return std::numeric_limits<double>::quiet_NaN();
    default:
      return std::numeric_limits<double>::denorm_min();
  }
}

PLANTED("QJ", XLOPER12*, GoodNothing, int which) {
  if (which == 0) return nullptr;
  return Return(OfType(which == 1 ? xltypeMissing : xltypeNil));
}

PLANTED("Q", XLOPER12*, GoodCaller) {
  XLOPER12 caller;
  Call(xlfCaller, {}, &caller);
  const std::string text = Describe(caller);
  Free(caller);
  return ReturnText(text);
}

PLANTED("UU", XLOPER12*, GoodReference, XLOPER12* reference) { return reference; }

PLANTED("QJJ", XLOPER12*, GoodGrid, int rows, int columns) {
  static std::vector<XLOPER12> elements;
  elements.clear();
  for (int i = 0; i < rows * columns; ++i) elements.push_back(Number(i + 1));
  return Return(Array(elements.data(), rows, columns));
}

/// Return codes of every call that an add-in may make from a worksheet function, and of some that
/// it may not.
PLANTED("QU", XLOPER12*, GoodApi, XLOPER12* reference) {
  std::string codes;
  const auto call = [&](const char* name, int function,
                        std::initializer_list<const XLOPER12*> arguments) {
    XLOPER12 result;
    codes += std::string(codes.empty() ? "" : " ") + name + "=" +
             std::to_string(Call(function, arguments, &result));
    Free(result);
  };
  const XLOPER12 one = Number(1);
  const XLOPER12 name = Text(u"Sheet1");
  call("caller", xlfCaller, {});
  call("coerce", xlCoerce, {reference});
  call("id", xlSheetId, {});
  call("idof", xlSheetId, {&name});
  call("abort", xlAbort, {});
  call("name", xlGetName, {});
  call("hwnd", xlGetHwnd, {});
  call("inst", xlGetInst, {});
  call("instptr", xlGetInstPtr, {});
  call("stack", xlStack, {});
  call("set", xlSet, {reference, &one});
  call("workspace", xlfGetWorkspace, {&one});
  call("register", xlfRegister, {&name, &name, &name});
  call("unregister", xlfUnregister, {&one});
  call("count", xlCoerce, {});
  call("unknown", 4711, {});
  return ReturnText(codes);
}
