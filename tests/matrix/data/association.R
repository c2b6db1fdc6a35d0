# Covariance and correlation matrices of variables with gaps and ties. A case: a line that begins with
# `case`, the variables (x, an empty field where a value is missing), then matrices (m: method, use,
# cov or cor, then the entries row by row; a method's cov is of the ranks for spearman).
# Made with: Rscript association.R > association.csv
show <- function(kind, values) {
  text <- ifelse(is.na(values), "", sprintf("%.17g", as.numeric(values)))
  cat(paste(c(kind, text), collapse = ","), "\n", sep = "")
}
with_gaps <- function(x, share) {
  x[sample(length(x), floor(share * length(x)))] <- NA
  x
}

set.seed(41)
n <- 60
base <- rnorm(n)
cases <- list(
  cbind(base + rnorm(n), 1e6 + base, round(base, 1), sample(4, n, replace = TRUE)),
  apply(cbind(base, base + rnorm(n) / 10, round(3 * base), rexp(n)), 2, with_gaps, share = 0.15),
  cbind(with_gaps(round(base), 0.3), base * 1e-8, with_gaps(rnorm(n) * 1e8, 0.05), rcauchy(n),
        sample(2, n, replace = TRUE))
)
for (x in cases) {
  cat("case\n")
  for (column in seq_len(ncol(x))) show("x", x[, column])
  for (method in c("pearson", "spearman")) for (use in c("complete.obs", "pairwise.complete.obs")) {
    if (method == "pearson" || use == "complete.obs")  # R has no ranks' covariance pair by pair
      show(paste("m", method, use, "cov", sep = ","), cov(x, use = use, method = method))
    show(paste("m", method, use, "cor", sep = ","), cor(x, use = use, method = method))
  }
}
