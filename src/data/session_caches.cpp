#include "data/session_caches.h"

#include <utility>

namespace zavrel {
namespace {

std::shared_ptr<ExcelDataCache> session_data;
std::shared_ptr<DatasetParmCache> session_parms;

}  // namespace

void SetSessionCaches(std::shared_ptr<ExcelDataCache> data,
                      std::shared_ptr<DatasetParmCache> parms) {
  session_parms = std::move(parms);
  session_data = std::move(data);
}

ExcelDataCache* SessionExcelDataCache() { return session_data.get(); }
DatasetParmCache* SessionDatasetParmCache() { return session_parms.get(); }

}  // namespace zavrel
