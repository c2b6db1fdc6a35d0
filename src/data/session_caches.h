#pragma once
// The session's caches, as the reading of arguments uses them.

#include <memory>

#include "data/dataset_parm_cache.h"
#include "data/excel_data_cache.h"

namespace zavrel {

/// The session passes its caches when it opens, and two null pointers when it closes. Without
/// caches every call builds its data sets anew.
void SetSessionCaches(std::shared_ptr<ExcelDataCache> data,
                      std::shared_ptr<DatasetParmCache> parms);

/// Null while no session is open.
ExcelDataCache* SessionExcelDataCache();
DatasetParmCache* SessionDatasetParmCache();

}  // namespace zavrel
