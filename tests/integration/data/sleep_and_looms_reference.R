# Reference values for the example workbook of paired and categorical data, from R and its own copies of
# the data (datasets::sleep, datasets::warpbreaks).
# Made with: Rscript sleep_and_looms_reference.R > sleep_and_looms_reference.csv
show <- function(sheet, cell, value) cat(sprintf("%s,%s,%.17g\n", sheet, cell, value))
down <- function(sheet, column, first, values) {
  for (i in seq_along(values)) show(sheet, paste0(column, first + i - 1), values[i])
}

sleep <- datasets::sleep
x <- sleep$extra[sleep$group == 2]
y <- sleep$extra[sleep$group == 1]
d <- x - y
test <- t.test(x, y, paired = TRUE)
down("Paired", "B", 5, c(length(d), mean(d), median(d), sd(d), test$stderr, test$statistic, sum(d > 0),
                         sum(d >= -1 & d <= 1), (4.6 - mean(d)) / sd(d)))
for (drug in 1:2) {
  v <- sleep$extra[sleep$group == drug]
  down("Paired", c("B", "C")[drug], 17, c(length(v), mean(v), sd(v), quantile(v, 0.25), sum(v > 0),
                                          sum(v >= 1 & v <= 3)))
}
down("Paired", "B", 24, c(mean(sleep$extra[c(1:5, 11:15)]), sum(sleep$extra[sleep$ID == 9])))

looms <- datasets::warpbreaks
show("Categories", "B4", nlevels(looms$tension))
tensions <- sort(levels(looms$tension))
down("Categories", "B", 7, sapply(tensions, function(t) sum(looms$tension == t)))
down("Categories", "C", 7, sapply(tensions, function(t) mean(looms$breaks[looms$tension == t])))
down("Categories", "D", 7, sapply(tensions, function(t) sd(looms$breaks[looms$tension == t])))
down("Categories", "E", 7, sapply(tensions, function(t) median(looms$breaks[looms$tension == t])))
for (wool in c("A", "B")) {
  means <- sapply(tensions, function(t) mean(looms$breaks[looms$tension == t & looms$wool == wool]))
  down("Categories", c(A = "F", B = "G")[wool], 7, means)
}
for (i in 1:4) show("Categories", paste0(c("B", "C", "D", "E")[i], 13), which(looms$wool == "B")[i])
low_a <- looms$wool == "A" & looms$tension == "L"
down("Categories", "B", 17, c(sum(looms$breaks >= 20 & looms$breaks <= 30),
                              mean(looms$breaks[looms$tension == "L"]), mean(log10(looms$breaks)),
                              exp(mean(log(looms$breaks))), var(sqrt(looms$breaks)),
                              sum(looms$breaks[low_a]), log(nrow(looms))))

model <- model.matrix(~ wool * tension, looms)
down("Model", "A", 2, log10(looms$breaks))
for (i in 1:5) {
  name <- c("woolB", "tensionM", "tensionH", "woolB:tensionM", "woolB:tensionH")[i]
  down("Model", c("B", "C", "D", "E", "F")[i], 2, model[, name])
}
