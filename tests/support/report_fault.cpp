#include <doctest/doctest.h>

#include "support/fake_excel.h"

namespace zavrel::tests {

void ReportFault(const std::string& fault) { FAIL_CHECK(fault); }

}  // namespace zavrel::tests
