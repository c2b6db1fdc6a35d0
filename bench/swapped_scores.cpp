// swapped_scores ROWS COLUMNS memory|disk: computes principal component scores with the working
// copies of the matrix in memory or on disk, and prints the seconds.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "matrix/eigendata.h"
#include "platform/swapped_array.h"

int main(int count, char** arguments) {
  if (count != 4) return 2;
  const std::size_t rows = std::strtoul(arguments[1], nullptr, 10);
  const std::size_t columns = std::strtoul(arguments[2], nullptr, 10);
  zavrel::DoubleMatrix x(rows, std::vector<double>(columns));
  unsigned state = 1;
  for (auto& row : x)
    for (double& number : row) number = (state = state * 1664525u + 1013904223u) / 4294967296.0;
  const bool on_disk = std::string_view(arguments[3]) == "disk";
  const zavrel::MemoryBudget budget(on_disk ? 1 : static_cast<std::size_t>(-1));
  const auto start = std::chrono::steady_clock::now();
  const zavrel::DoubleMatrix scores = zavrel::matrix::PrincipalComponentScores(x);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::printf("%.2f\n", seconds.count());
  return scores.size() == rows ? 0 : 1;
}
