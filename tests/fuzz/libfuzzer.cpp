// Where faults end, and the only target that is linked in, as libFuzzer calls it.
#include <cstdio>
#include <cstdlib>

#include "fuzz/target.h"

void zavrel::tests::ReportFault(const std::string& fault) {
  std::fprintf(stderr, "fault: %s\n", fault.c_str());
  std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  (*zavrel::tests::FuzzTarget::all().front())({data, size});
  return 0;
}
