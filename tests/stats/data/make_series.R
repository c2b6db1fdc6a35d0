# Series in their order (x,values), each followed by what the tests ask of it: the Lilliefors distance
# (l), the Durbin-Watson statistic of the deviations from the mean (d), runs about a cut-off
# (r,cutoff,runs), autocorrelations (a,lag,value), and box plots with quartiles of R's type 7 (b,Q1,
# median,Q3,four group sizes,whisker ends; a value on a fence is an outlier).
# Made with: Rscript make_series.R > series.csv
show <- function(kind, values) cat(c(kind, sprintf("%.17g", values)), sep = ",", fill = 1e6)

lilliefors <- function(x) {
  x <- sort(x)
  n <- length(x)
  p <- pnorm(x, mean(x), sd(x))
  max(abs(p - (seq_len(n) - 1) / n), abs(seq_len(n) / n - p))
}
durbin_watson <- function(e) sum(diff(e)^2) / sum(e^2)
runs <- function(x, cutoff) length(rle(x >= cutoff)$lengths)
box_plot <- function(x) {
  q <- quantile(x, c(0.25, 0.5, 0.75), type = 7, names = FALSE)
  side <- function(beyond_mild, beyond_extreme) c(sum(beyond_extreme), sum(beyond_mild & !beyond_extreme))
  range <- q[3] - q[1]
  low <- side(x <= q[1] - 1.5 * range, x <= q[1] - 3 * range)
  high <- side(x >= q[3] + 1.5 * range, x >= q[3] + 3 * range)
  c(q, low, rev(high), range(x[x > q[1] - 1.5 * range & x < q[3] + 1.5 * range]))
}

set.seed(52)
for (x in list(as.numeric(lh), as.numeric(rivers), c(2, 4, 4, 5, 9), c(1, 2), rnorm(300), rt(100, 2))) {
  show("x", x)
  show("l", lilliefors(x))
  show("d", durbin_watson(x - mean(x)))
  for (cutoff in c(mean(x), x[2], min(x), max(x) + 1)) show("r", c(cutoff, runs(x, cutoff)))
  lags <- unique(c(0, 1, min(2, length(x) - 1), length(x) %/% 3, length(x) - 1))
  correlations <- acf(x, plot = FALSE, lag.max = length(x))$acf
  for (lag in lags) show("a", c(lag, correlations[lag + 1]))
  show("b", box_plot(x))
}
