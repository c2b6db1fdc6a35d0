# Reference values for the nonparametric tests, from R's own tests and distributions.
# Made with: Rscript make_reference.R > reference.csv
#
# Each line starts with its kind; samples stand at its end.
#   m,less,two-sided,greater,n1,n2,values    wilcox.test, two samples without ties
#   w,less,two-sided,greater,mu,n,values     wilcox.test, one sample without ties
#   u,n1,n2,W,less,greater             pwilcox
#   v,n,V,less,greater                 psignrank
#   t,ties,term,sum1,sum2,n1,n2,values ranks of two samples with ties
#   z,ties,term,negative,positive,mu,n,values
#   k,H,H uncorrected,p,groups,sizes,values   kruskal.test
#   x,p,groups,sizes,values            share of all arrangements with an H at least as great
set.seed(20261125)
put <- function(kind, ...) cat(kind, paste0(",", sprintf("%.17g", c(...))), "\n", sep = "")
alternatives <- c("less", "two.sided", "greater")

two <- function(n1, n2, shift, exact) {
  x <- sample(4000, n1 + n2)
  x[seq_len(n1)] <- x[seq_len(n1)] + shift * 4000 + 0.5
  a <- x[seq_len(n1)]
  b <- x[-seq_len(n1)]
  put("m", sapply(alternatives, function(name) wilcox.test(a, b, alternative = name, exact = exact)$p.value),
      n1, n2, a, b)
}
for (sizes in list(c(1, 1), c(1, 9), c(4, 3), c(7, 7), c(10, 16), c(25, 30), c(49, 49), c(50, 50), c(3, 80),
                   c(100, 25)))
  for (shift in c(0, 0.1, -0.4)) two(sizes[1], sizes[2], shift, TRUE)
for (sizes in list(c(51, 50), c(60, 60), c(30, 100), c(5, 501), c(501, 5)))
  for (shift in c(0, 0.1, -0.4)) two(sizes[1], sizes[2], shift, FALSE)

one <- function(n, mu, shift, exact) {
  x <- sample(3 * n, n) * sample(c(-1, 1), n, TRUE, c(1 - shift, shift)) + mu
  put("w", sapply(alternatives, function(name) wilcox.test(x, mu = mu, alternative = name, exact = exact)$p.value),
      mu, n, x)
}
for (n in c(1, 2, 5, 12, 49, 50, 120)) for (shift in c(0.5, 0.3, 0.8)) one(n, 2.5, shift, TRUE)
one(1000, 0, 0.52, TRUE)
for (n in c(1001, 1500)) for (shift in 0.47) one(n, -4, shift, FALSE)

for (sizes in list(c(1, 1), c(2, 5), c(8, 8), c(12, 31), c(49, 50), c(50, 50), c(2, 1000))) {
  n1 <- sizes[1]
  n2 <- sizes[2]
  for (u in unique(round(n1 * n2 * c(0, 0.02, 0.1, 0.25, 0.5, 0.51, 0.8, 0.97, 1))))
    put("u", n1, n2, u + n1 * (n1 + 1) / 2, pwilcox(u, n1, n2), pwilcox(u - 1, n1, n2, FALSE))
}
for (n in c(1, 2, 3, 10, 25, 100, 200, 500, 1000)) {
  all <- n * (n + 1) / 2
  for (v in unique(round(all * (if (n < 500) c(0, 0.01, 0.1, 0.3, 0.45, 0.5, 0.51, 0.55, 0.9, 1) else c(0.1, 0.48, 1)))))
    put("v", n, v, psignrank(v, n), psignrank(v - 1, n, FALSE))
}

groups_of <- function(values) {
  t <- table(values)
  c(sum(t > 1), sum(t^3 - t))
}
for (n in list(c(1, 1), c(2, 3), c(10, 12), c(200, 100))) {
  a <- round(rnorm(n[1]), 1)
  b <- round(rnorm(n[2], 0.3), 1)
  r <- rank(c(a, b))
  put("t", groups_of(c(a, b)), sum(r[seq_len(n[1])]), sum(r[-seq_len(n[1])]), n, a, b)
}
for (n in c(1, 4, 20, 300)) {
  mu <- 2
  x <- sample(-6:9, n, TRUE)
  d <- (x - mu)[x != mu]
  r <- rank(abs(d))
  put("z", groups_of(abs(d)), sum(r[d < 0]), sum(r[d > 0]), mu, n, x)
}

kruskal <- function(x, sizes) {
  g <- rep(seq_along(sizes), sizes)
  test <- kruskal.test(x, g)
  t <- groups_of(x)
  n <- length(x)
  corrected <- unname(test$statistic)
  put("k", corrected, corrected * (1 - t[2] / (n^3 - n)), test$p.value, length(sizes), sizes, x)
}
for (sizes in list(c(1, 1), c(2, 3), c(5, 5, 5), c(3, 9, 4, 8), rep(6, 12), c(40, 60, 50)))
  for (digits in c(0, 1, 8)) {
    x <- round(rnorm(sum(sizes), rep(seq_along(sizes), sizes) * 0.3), digits)
    if (length(unique(x)) > 1) kruskal(x, sizes)
  }

# Every arrangement, as an index of groups for each value.
arrangements <- function(sizes) {
  if (length(sizes) == 1) return(matrix(1, 1, sizes))
  n <- sum(sizes)
  chosen <- combn(n, sizes[1])
  rest <- arrangements(sizes[-1]) + 1
  do.call(rbind, lapply(seq_len(ncol(chosen)), function(j) {
    all <- matrix(1, nrow(rest), n)
    all[, -chosen[, j]] <- rest
    all
  }))
}
exact <- function(x, sizes) {
  r <- rank(x)
  statistic <- function(g) sum(tapply(r, g, sum)^2 / sizes)
  observed <- statistic(rep(seq_along(sizes), sizes))
  share <- mean(apply(arrangements(sizes), 1, statistic) >= observed - 1e-9)
  put("x", share, length(sizes), sizes, x)
}
for (sizes in list(c(1, 1), c(2, 3), c(4, 6), c(2, 2, 2), c(3, 1, 4), c(2, 3, 3), c(3, 3, 3), c(1, 2, 1, 3)))
  for (digits in c(0, 8)) {
    x <- round(rnorm(sum(sizes), rep(seq_along(sizes), sizes) * 0.8), digits)
    if (length(unique(x)) > 1) exact(x, sizes)
  }
