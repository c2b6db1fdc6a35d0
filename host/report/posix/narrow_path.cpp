#include "host/report/report_writer.h"

namespace zavhost {

std::string NarrowPath(const std::filesystem::path& file) { return file.string(); }

}  // namespace zavhost
