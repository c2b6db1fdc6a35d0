#!/usr/bin/env Rscript
# Writes matrices.csv beside it: matrices, row by row, with R's inverse, determinant, eigenvalues and
# singular values, to 17 digits. Each line is case, what, rows, columns, values.
options(digits = 17)
script <- sub("--file=", "", grep("--file=", commandArgs(), value = TRUE))
out <- file(file.path(dirname(script), "matrices.csv"), "w")
put <- function(case, what, values) {
  values <- as.matrix(values)
  cat(case, what, nrow(values), ncol(values), sprintf("%.17g", t(values)), sep = ",", file = out)
  cat("\n", file = out)
}
square <- function(case, a) {
  put(case, "matrix", a)
  put(case, "inverse", solve(a, tol = 0))
  put(case, "determinant", det(a))
  put(case, "condition", kappa(a, exact = TRUE))
}
symmetric <- function(case, a) {
  square(case, a)
  put(case, "eigenvalues", eigen(a, symmetric = TRUE)$values)
  put(case, "eigenvectors", eigen(a, symmetric = TRUE)$vectors)
}
data <- function(case, x) {
  x <- as.matrix(x)
  decomposition <- svd(x)
  put(case, "data", x)
  put(case, "scores", decomposition$u %*% diag(decomposition$d, length(decomposition$d)))
}

set.seed(20)
square("uniform 12", matrix(runif(144), 12))
square("needs row exchanges", rbind(c(0, 2, 1), c(1, 0, 3), c(4, 1, 0)))
square("one", matrix(-4))
symmetric("covariance of iris", unname(cov(iris[, 1:4])))
symmetric("correlation of longley", unname(cor(longley)))
symmetric("hilbert 6", outer(1:6, 1:6, function(i, j) 1 / (i + j - 1)))
a <- matrix(rnorm(400), 20)
symmetric("random 20", (a + t(a)) / 2)
data("iris", unname(iris[, 1:4]))
data("stackloss", unname(scale(stackloss)))
data("wide", matrix(rnorm(6 * 20), 6))
data("nearly square", matrix(rnorm(25 * 20), 25))
close(out)
