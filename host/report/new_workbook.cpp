#include "host/report/new_workbook.h"

#include <string>

#include "host/report/report_writer.h"

namespace zavhost {

void Check(lxw_error error) {
  if (error != LXW_NO_ERROR)
    throw WorkbookError(std::string("the workbook cannot be written: ") + lxw_strerror(error));
}

NewWorkbook::NewWorkbook(const std::filesystem::path& file)
    : book_(workbook_new(NarrowPath(file).c_str())) {
  if (book_ == nullptr) throw WorkbookError("the workbook cannot be begun");
}

NewWorkbook::~NewWorkbook() {
  if (book_ != nullptr) lxw_workbook_free(book_);
}

}  // namespace zavhost
