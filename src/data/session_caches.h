#pragma once
// The caches that the argument conversion works with: the session's.

#include <memory>

#include "data/dataset_parm_cache.h"
#include "data/excel_data_cache.h"

namespace zavrel {

/// The session makes the caches when it opens and hands them over here; two null pointers when it
/// closes. Without caches every call reads its data sets for itself.
void SetSessionCaches(std::shared_ptr<ExcelDataCache> data,
                      std::shared_ptr<DatasetParmCache> parms);

/// Null while no session is open.
ExcelDataCache* SessionExcelDataCache();
DatasetParmCache* SessionDatasetParmCache();

}  // namespace zavrel
