// "XLCall32" as older versions had it: it hands out the callback of the running program, and counts
// how often it was asked.
#include <windows.h>

#include "excel/xloper12.h"

namespace {
int times_asked = 0;
}

extern "C" __declspec(dllexport) Excel12Callback GetExcel12EntryPt() {
  ++times_asked;
  return reinterpret_cast<Excel12Callback>(
      reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(nullptr), "MdCallBack12")));
}

extern "C" __declspec(dllexport) int TimesAsked() { return times_asked; }
