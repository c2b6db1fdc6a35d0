#pragma once
// The callback that add-ins look up in the program: "MdCallBack12".

#include "host/capi/excel_api.h"

#ifdef _WIN32
#define ZAVHOST_EXPORT extern "C" __declspec(dllexport)
#else
#define ZAVHOST_EXPORT extern "C" __attribute__((visibility("default"), used))
#endif

/// Calls the API that last entered an add-in; fails (32) if there is none.
ZAVHOST_EXPORT int MdCallBack12(int function, int count, XLOPER12** arguments, XLOPER12* result);

namespace zavhost {

/// The API that receives the calls of add-ins; null if there is none.
ExcelApi* ActiveApi();
void SetActiveApi(ExcelApi* api);

}  // namespace zavhost
