#include "host/capi/callback.h"

#include <atomic>
#include <cstring>

namespace zavhost {
namespace {

std::atomic<ExcelApi*> active_api = nullptr;

}  // namespace

ExcelApi* ActiveApi() { return active_api.load(std::memory_order_acquire); }
void SetActiveApi(ExcelApi* api) { active_api.store(api, std::memory_order_release); }

}  // namespace zavhost

int MdCallBack12(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  if (zavhost::ExcelApi* api = zavhost::ActiveApi())
    return api->Call(function, count, arguments, result);
  if (result != nullptr) {
    std::memset(result, 0, sizeof *result);
    result->xltype = xltypeErr;
    result->val.err = xlerrValue;
  }
  return xlretFailed;
}
