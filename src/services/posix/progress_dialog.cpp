#include "services/progress_dialog.h"

namespace zavrel::services {

class ProgressDialog::Window {};

ProgressDialog::ProgressDialog(Progress&, void*, std::u16string_view, bool) {}

ProgressDialog::~ProgressDialog() = default;

}  // namespace zavrel::services
