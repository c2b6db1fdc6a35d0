# Expected values of floods.xlsx. Writes lines of sheet, cell, value to standard output, for the numbers that follow from
# the data by maximum likelihood: R maximises the likelihoods once more, with densities written here.
#
# Made with: Rscript floods_reference.R > floods_reference.csv

x <- read.csv(file.path(dirname(sub("^--file=", "", grep("^--file=", commandArgs(), value = TRUE))),
                        "../../../examples/floods.csv"))$discharge

say <- function(sheet, cell, value) cat(sprintf("%s,%s,%.17g\n", sheet, cell, value))

# The maximum of a likelihood, by Newton's method from one that the simplex method has found roughly.
maximum <- function(log_density, start) {
  objective <- function(p) -sum(log_density(x, p))
  found <- suppressWarnings(optim(start, objective, control = list(reltol = 1e-12, maxit = 5000)))$par
  for (round in 1:5) {
    h <- 1e-3 * abs(found)
    gradient <- sapply(seq_along(found), function(i) {
      d <- replace(numeric(length(found)), i, h[i])
      (8 * (objective(found + d) - objective(found - d)) - (objective(found + 2 * d) - objective(found - 2 * d))) / (12 * h[i])
    })
    hessian <- optimHess(found, objective, control = list(ndeps = 1e-4 * abs(found)))
    found <- found - solve(hessian, gradient)
  }
  list(at = found, value = -objective(found), errors = sqrt(diag(solve(hessian))))
}

gumbel <- function(x, p) { z <- (x - p[1]) / p[2]; -log(p[2]) - z - exp(-z) }
gev <- function(x, p) { t <- 1 + p[3] * (x - p[1]) / p[2]; -log(p[2]) - (1 + 1 / p[3]) * log(t) - t^(-1 / p[3]) }
lognormal <- function(x, p) dlnorm(x, p[1], p[2], log = TRUE)

write_fit <- function(row, fit) {
  n <- length(fit$at)
  for (i in seq_len(n)) say("Fits", paste0("B", row + i), fit$at[i])
  for (i in seq_len(n)) say("Fits", paste0("C", row + i), fit$errors[i])
  say("Fits", paste0("B", row + n + 1), fit$value)
  say("Fits", paste0("B", row + n + 2), 2 * n - 2 * fit$value)
  say("Fits", paste0("B", row + n + 3), n * log(length(x)) - 2 * fit$value)
  say("Fits", paste0("B", row + n + 4), length(x))
}

by_gumbel <- maximum(gumbel, c(39, 19))
by_gev <- maximum(gev, c(35, 14, 0.4))
by_lognormal <- maximum(lognormal, c(mean(log(x)), sqrt(mean((log(x) - mean(log(x)))^2))))
write_fit(1, by_gumbel)
write_fit(10, by_gev)
write_fit(20, by_lognormal)
periods <- c(2, 5, 10, 25, 50, 100, 200)
for (i in seq_along(periods)) {
  q <- 1 - 1 / periods[i]
  say("Return periods", paste0("B", 4 + i), by_gumbel$at[1] - by_gumbel$at[2] * log(-log(q)))
  say("Return periods", paste0("C", 4 + i), by_gev$at[1] + by_gev$at[2] * ((-log(q))^-by_gev$at[3] - 1) / by_gev$at[3])
  say("Return periods", paste0("D", 4 + i), qlnorm(q, by_lognormal$at[1], by_lognormal$at[2]))
}
