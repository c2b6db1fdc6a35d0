# Reference values for the example workbook of the irises, from R and its own copy of the data
# (datasets::iris). The sign of a column whose sign is arbitrary is chosen so that its first value is
# positive; the fourth field then is 1.
# Made with: Rscript iris_reference.R > iris_reference.csv
show <- function(sheet, cell, value, arbitrary = 0)
  cat(sprintf("%s,%s,%.17g,%d\n", sheet, cell, value, arbitrary))
block <- function(sheet, column, row, values, arbitrary = 0) {
  for (j in seq_len(ncol(values))) {
    sign <- if (arbitrary) sign(values[1, j]) else 1
    for (i in seq_len(nrow(values)))
      show(sheet, paste0(LETTERS[column + j - 1], row + i - 1), sign * values[i, j], arbitrary)
  }
}

x <- as.matrix(datasets::iris[, 1:4])
block("Analysis", 2, 5, cor(x))
block("Analysis", 2, 11, cor(x, method = "spearman"))
block("Analysis", 2, 17, cov(x))
e <- eigen(cor(x), symmetric = TRUE)
block("Analysis", 2, 23, cbind(e$values, e$values / 4))
block("Analysis", 2, 29, e$vectors, 1)
for (k in 1:3) {
  petals <- x[datasets::iris$Species == levels(datasets::iris$Species)[k], 3:4]
  block("Analysis", 2, 34 + k, cbind(cor(petals)[1, 2], cov(petals)[1, 2]))
}
block("Scores", 7, 2, prcomp(x, scale. = TRUE)$x, 1)
