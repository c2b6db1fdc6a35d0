# Series in ascending order (lines that begin with x), each followed by probes (p): a probability and
# the quantiles by the definitions in `types`. Probabilities are exact in binary or well away from
# multiples of half a step, so that no rounding decides.
# Made with: Rscript make_quantiles.R > quantiles.csv
types <- c(7, 4, 3, 1, 6, 2)
show <- function(kind, values) cat(c(kind, sprintf("%.17g", values)), sep = ",", fill = 1e6)

set.seed(20)
series <- list(
  rnorm(1), rnorm(2), rnorm(3), rnorm(4), rnorm(16), rnorm(37), 1e6 + rnorm(50) / 1e6,
  round(rnorm(8), 1), round(rnorm(64), 1), sample(5, 101, replace = TRUE), rep(0.1, 7)
)
probabilities <- function(n) {
  well_away <- function(p) p[abs(2 * n * p - round(2 * n * p)) > 1e-6]
  sixteenths <- (0:16) / 16
  exact <- if (log2(n) %% 1 == 0) sixteenths else c(0, well_away(sixteenths), 1)
  sort(c(exact, well_away(runif(12))))
}
for (x in lapply(series, sort)) {
  show("x", x)
  for (p in probabilities(length(x)))
    show("p", c(p, sapply(types, function(type) quantile(x, p, type = type, names = FALSE))))
}
