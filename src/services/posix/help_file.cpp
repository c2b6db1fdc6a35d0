#include "services/help_file.h"

namespace zavrel::services {

bool CanShowCompiledHelp(const std::filesystem::path&) { return false; }

}  // namespace zavrel::services
