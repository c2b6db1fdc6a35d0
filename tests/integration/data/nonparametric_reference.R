# Reference values for the example workbook of nonparametric tests, from R, its own copies of the data
# (datasets::PlantGrowth, datasets::morley) and the example of its help on wilcox.test.
# Made with: Rscript nonparametric_reference.R > nonparametric_reference.csv
down <- function(sheet, column, first, values) {
  cat(sprintf("%s,%s%d,%.17g\n", sheet, column, first + seq_along(values) - 1, values), sep = "")
}
sides <- function(...) sapply(c("two.sided", "less", "greater"), function(side)
  wilcox.test(..., alternative = side)$p.value)
ties <- function(x) c(sum(table(x) > 1), sum(table(x)^3 - table(x)))

groups <- split(PlantGrowth$weight, PlantGrowth$group)
a <- groups$ctrl
b <- groups$trt2
r <- rank(c(a, b))
down("Mann-Whitney", "B", 5, c(length(a), length(b), sum(r[1:10]), sum(r[11:20]), wilcox.test(a, b)$statistic,
                               ties(c(a, b))[1]))
down("Mann-Whitney", "B", 12, sides(a, b, exact = TRUE))
a <- morley$Speed[morley$Expt == 1]
b <- morley$Speed[morley$Expt == 2]
down("Mann-Whitney", "B", 17, c(sum(rank(c(a, b))[1:20]), ties(c(a, b))))
down("Mann-Whitney", "B", 22, wilcox.test(a, b, exact = FALSE)$p.value)

x <- c(1.83, 0.50, 1.62, 2.48, 1.68, 1.88, 1.55, 3.06, 1.30)
y <- c(0.878, 0.647, 0.598, 2.05, 1.06, 1.29, 1.06, 3.14, 1.29)
v <- wilcox.test(x, y, paired = TRUE, exact = TRUE)$statistic
down("Signed ranks", "B", 5, c(45 - v, v, 9, ties(abs(x - y))))
down("Signed ranks", "B", 10, sides(x, y, paired = TRUE, exact = TRUE)[c(1, 3, 2)])
d <- morley$Speed - 792.458
r <- rank(abs(d))
down("Signed ranks", "B", 15, c(sum(r[d < 0]), sum(r[d > 0]), sum(d != 0), ties(abs(d))))
down("Signed ranks", "B", 23, wilcox.test(morley$Speed, mu = 792.458, exact = FALSE)$p.value)

kruskal <- function(column, groups) {
  x <- unlist(groups)
  n <- length(x)
  r <- rank(x)
  g <- rep(1:3, lengths(groups))
  test <- kruskal.test(x, g)
  divisor <- 1 - ties(x)[2] / (n^3 - n)
  down("Kruskal-Wallis", column, 5, c(test$statistic, test$statistic * divisor, test$parameter, n, ties(x)[1],
                                      divisor, tapply(r, g, sum)))
  down("Kruskal-Wallis", column, 15, test$p.value)
  r
}
r <- kruskal("B", groups)
down("Kruskal-Wallis", "B", 14, kruskal.test(groups)$p.value)
# All 756,756 ways of giving out 15 ranks to groups of five.
r <- kruskal("C", lapply(groups, head, 5))
spread <- function(s1, s2) s1^2 + s2^2 + (sum(r) - s1 - s2)^2
observed <- spread(sum(r[1:5]), sum(r[6:10]))
at_least <- apply(combn(15, 5), 2, function(first) {
  s2 <- combn(r[-first], 5, sum)
  sum(spread(sum(r[first]), s2) >= observed - 1e-9)
})
down("Kruskal-Wallis", "C", 14, sum(at_least) / 756756)
down("Kruskal-Wallis", "C", 16, sum(at_least) / 756756)
