#pragma once
// The callback that add-ins look up in the program: "MdCallBack12".

#include "host/capi/excel_api.h"

#ifdef _WIN32
#define ZAVHOST_EXPORT extern "C" __declspec(dllexport)
#else
#define ZAVHOST_EXPORT extern "C" __attribute__((visibility("default"), used))
#endif

/// Goes to the API that entered an add-in last; fails (32) when there is none.
ZAVHOST_EXPORT int MdCallBack12(int function, int count, XLOPER12** arguments, XLOPER12* result);

namespace zavhost {

/// The API that calls of add-ins go to; null when there is none.
ExcelApi* ActiveApi();
void SetActiveApi(ExcelApi* api);

}  // namespace zavhost
