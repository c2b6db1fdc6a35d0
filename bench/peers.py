#!/usr/bin/env python3
"""The same work by other programs, of the same size and kind as the benchmarks: numpy, pandas and R, from Debian.

    peers.py

Prints a line for each: the task, the program and its version, and the milliseconds of the best of many runs.
"""
import subprocess
import time

import numpy
import pandas

ROUNDS = 15
ROWS = 1_000_000
VARIABLES, OBSERVATIONS = 27, 100_000

# R measures itself, since its start-up is no part of the work. Written with the same sizes.
R_SCRIPT = f"""
report <- function(task, work) {{
  best <- Inf
  for (round in 1:{ROUNDS}) {{
    start <- Sys.time()
    work()
    best <- min(best, as.numeric(difftime(Sys.time(), start, units = "secs")))
  }}
  cat(task, paste0("R ", getRversion()), best * 1e3, sep = "\\t"); cat("\\n")
}}
set.seed(1)
x <- rnorm({ROWS}, 100, 15); y <- rnorm({ROWS}, 100, 15)
m <- matrix(rnorm({VARIABLES * OBSERVATIONS}), {OBSERVATIONS})
gaps <- m; gaps[sample(length(gaps), length(gaps) / 100)] <- NA
labels <- paste("Region", sample(10000, {ROWS}, replace = TRUE))
report("percentile", function() quantile(x, 0.3))
report("categories", function() match(labels, unique(labels)))
report("median", function() median(x - y))
report("correlation", function() cor(m))
report("gaps", function() cor(gaps, use = "pairwise.complete.obs"))
report("ranks", function() cor(m, method = "spearman"))
"""


def report(task, program, work):
    best = float("inf")
    for _ in range(ROUNDS):
        start = time.perf_counter()
        work()
        best = min(best, time.perf_counter() - start)
    print(task, program, best * 1e3, sep="\t", flush=True)


def main():
    random = numpy.random.default_rng(1)
    as_numpy, as_pandas = f"numpy {numpy.__version__}", f"pandas {pandas.__version__}"
    x, y = random.normal(100, 15, (2, ROWS))
    matrix = random.normal(size=(VARIABLES, OBSERVATIONS))
    frame = pandas.DataFrame(matrix.T)
    gaps = frame.mask(random.random(frame.shape) < 0.01)
    # Each text is an object of its own, as each cell is.
    labels = numpy.array([f"Region {number}" for number in random.integers(10_000, size=ROWS)], dtype=object)
    report("percentile", as_numpy, lambda: numpy.percentile(x, 30))
    report("categories", as_pandas, lambda: pandas.factorize(labels))
    report("median", as_numpy, lambda: numpy.median(x - y))
    report("correlation", as_numpy, lambda: numpy.corrcoef(matrix))
    report("gaps", as_pandas, gaps.corr)
    report("ranks", as_pandas, lambda: frame.corr(method="spearman"))
    subprocess.run(["Rscript", "--vanilla", "-e", R_SCRIPT], check=True)


if __name__ == "__main__":
    main()
