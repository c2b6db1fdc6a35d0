# Reference values for the example workbook, from R and its own copy of the data (datasets::airquality).
# Made with: Rscript air_quality_reference.R > air_quality_reference.csv
data <- datasets::airquality
skewness <- function(x, n = length(x)) n / ((n - 1) * (n - 2)) * sum((x - mean(x))^3) / sd(x)^3
kurtosis <- function(x, n = length(x)) {
  n * (n + 1) / ((n - 1) * (n - 2) * (n - 3)) * sum((x - mean(x))^4) / var(x)^2 -
    3 * (n - 1)^2 / ((n - 2) * (n - 3)) + 3
}
show <- function(cell, value) cat(sprintf("Summary,%s,%.17g\n", cell, value))
variables <- c(B = "Ozone", C = "Solar.R", D = "Wind", E = "Temp")
for (column in names(variables)) {
  all <- data[[variables[column]]]
  x <- all[!is.na(all)]
  n <- length(x)
  text <- column == "C"  # in the workbook a missing radiation value is a text, a missing ozone value empty
  values <- c(length(all), n, if (text) 0 else sum(is.na(all)), if (text) sum(is.na(all)) else 0,
              mean(x), if (n == length(all)) mean(x) else NA, sd(x), var(x), var(x) * (n - 1) / n,
              skewness(x), kurtosis(x), min(x), max(x), max(x) - min(x), mean(abs(x - mean(x))),
              sd(x) / sqrt(n))
  for (i in seq_along(values)) if (!is.na(values[i])) show(paste0(column, 3 + i), values[i])
  for (month in 5:9) show(paste0(column, 17 + month), mean(all[data$Month == month], na.rm = TRUE))
  # All four have ties, so that the automatic method is the inverse of the distribution function.
  counts <- table(x)
  bins <- min(n %/% 3, 100)
  edges <- seq(min(x), max(x), length.out = bins + 1)
  heights <- tabulate(findInterval(x, edges, rightmost.closed = TRUE), bins)
  values <- c(quantile(x, c(0.25, 0.5, 0.75, 0.9)), quantile(x, 0.9, type = 6), quantile(x, 0.9, type = 2),
              quantile(x, 0.9, type = 1), as.numeric(names(counts)[which.max(counts)]),
              (edges[which.max(heights)] + edges[which.max(heights) + 1]) / 2)
  for (i in seq_along(values)) show(paste0(column, 37 + i), values[i])
}
ends <- data$Ozone[data$Month %in% c(5, 9)]
show("B29", mean(ends, na.rm = TRUE))
show("B30", mean(data$Temp))
show("B31", max(data$Ozone[1:31], data$Solar.R[1:31], 100, na.rm = TRUE))
show("B32", sum((1:6)^2))
ozone <- data$Ozone[!is.na(data$Ozone)]
show("B33", 100 * sd(ozone) / mean(ozone))
show("B34", round((mean(data$Temp) - 32) / 1.8, 2))
