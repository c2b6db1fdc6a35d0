# Reference values for fits and tests of goodness of fit, on data sets that come with R.
# Made with: Rscript make_fits.R > fits.csv (Debian: r-cran-mass, -fitdistrplus, -numderiv, -goftest)
#
#   s,SAMPLE,values
#   f,SAMPLE,DISTRIBUTION,log-likelihood,k,parameters,standard errors    k parameters, in the library's order
#   k,SAMPLE,DISTRIBUTION,statistic,p,parameters    ks.test, exact
#   a,SAMPLE,DISTRIBUTION,statistic,p,parameters    goftest::ad.test
#   c,SAMPLE,DISTRIBUTION,statistic,p,parameters    chisq.test on classes of equal probability
#   g,n,statistic,p                                 goftest::pAD, to five decimals; the limit to more
#
# Estimates begin with fitdistr or fitdist, which stop at about four digits; Newton's method on numDeriv's
# derivatives, which also give the standard errors, takes them to the last.
suppressMessages({library(fitdistrplus); library(numDeriv); library(goftest)})
number <- function(x) {
  short <- sprintf("%.15g", x)
  ifelse(as.numeric(short) == x, short, sprintf("%.17g", x))
}
put <- function(...) cat(paste(c(...), collapse = ","), "\n", sep = "")

samples <- list(
  rivers = rivers, wind = airquality$Wind, nile = as.numeric(Nile), precip = as.numeric(precip),
  islands = as.numeric(islands), waiting = faithful$waiting, magnitudes = quakes$mag,
  discoveries = as.numeric(discoveries), stations = quakes$stations, insects = InsectSprays$count,
  absences = MASS::quine$Days, shares = attitude$rating / 100,
  returns = diff(log(as.numeric(EuStockMarkets[1:401, "DAX"]))),
  maxima = apply(matrix(as.numeric(Nile), 5), 2, max))  # of each five years
for (name in names(samples)) put("s", name, number(samples[[name]]))

dgumbel <- function(x, location, scale) { z <- (x - location) / scale; exp(-z - exp(-z)) / scale }
dgumbelmin <- function(x, location, scale) dgumbel(-x, -location, scale)
dgev <- function(x, location, scale, shape) {
  t <- 1 + shape * (x - location) / scale
  ifelse(t > 0, t^(-1 / shape - 1) * exp(-t^(-1 / shape)) / scale, 0)
}
dllogis <- function(x, shape, scale) { z <- (x / scale)^shape; shape / x * z / (1 + z)^2 }
dburr <- function(x, shape, tail, scale) { z <- (x / scale)^shape; shape * tail / x * z / (1 + z)^(tail + 1) }
dfrechet2 <- function(x, shape, scale) { z <- (x / scale)^-shape; shape / x * z * exp(-z) }
dinvgamma <- function(x, shape, scale) dgamma(1 / x, shape, rate = scale) / x^2
dweibull3 <- function(x, shape, scale, location) dweibull(x - location, shape, scale)
dlnorm3 <- function(x, meanlog, sdlog, location) dlnorm(x - location, meanlog, sdlog)
dgamma3 <- function(x, shape, scale, location) dgamma(x - location, shape, scale = scale)
drayleigh <- function(x, scale) x / scale^2 * exp(-x^2 / (2 * scale^2))
dlomax <- function(x, shape, scale) shape / scale * (1 + x / scale)^(-shape - 1)
dbs <- function(x, shape, scale) {
  r <- sqrt(x / scale)
  (r + 1 / r) / (2 * shape * x) * dnorm((r - 1 / r) / shape)
}
dsu <- function(x, gamma, delta, location, scale) {
  z <- (x - location) / scale
  delta / scale / sqrt(1 + z^2) * dnorm(gamma + delta * asinh(z))
}
dgengamma <- function(x, shape, power, scale) power / x * (x / scale)^(shape * power) *
  exp(-(x / scale)^power) / gamma(shape)
dnakagami <- function(x, shape, spread) 2 * x * dgamma(x^2, shape, scale = spread / shape)
dkumaraswamy <- function(x, a, b) a * b * x^(a - 1) * (1 - x^a)^(b - 1)

newton <- function(at, x, density) {
  nll <- function(p) -sum(log(do.call(density, c(list(x), as.list(p)))))
  unit <- abs(at)
  for (round in 1:12) {
    # Differences over a few hundredths of a standard error.
    near <- function(z) nll(at + (z - 1) * unit)
    one <- rep(1, length(at))
    curvature <- hessian(near, one)
    step <- unit * solve(curvature, grad(near, one))
    errors <- unit * sqrt(diag(solve(curvature)))
    if (round > 3 && all(abs(step) < 1e-8 * errors)) break
    at <- at - step
    unit <- errors / 4
  }
  stopifnot(all(abs(step) < 1e-6 * errors))
  list(at = at, errors = errors, value = -nll(at))
}
fit <- function(sample, distribution, density, start) {
  x <- samples[[sample]]
  rough <- suppressWarnings(if (is.character(density))
    fitdist(x, density, start = as.list(start))
  else MASS::fitdistr(x, density, start = as.list(start),
                         control = list(parscale = abs(unname(start)) + 0.01, maxit = 20000)))
  if (is.character(density)) density <- get(paste0("d", density))
  best <- newton(unname(rough$estimate), x, function(x, ...) density(x, ...))
  stopifnot(abs(rough$loglik - best$value) < 1e-3)
  put("f", sample, distribution, number(best$value), length(best$at), number(best$at), number(best$errors))
}
fit("rivers", "lognormal", "lnorm", c(meanlog = 6, sdlog = 1))
fit("rivers", "inverse gamma", dinvgamma, c(shape = 3, scale = 1000))
fit("rivers", "log-logistic", dllogis, c(shape = 3, scale = 400))
fit("rivers", "Burr XII", dburr, c(shape = 3, tail = 1, scale = 400))
fit("rivers", "inverse Weibull", dfrechet2, c(shape = 2, scale = 300))
fit("rivers", "Birnbaum-Saunders", dbs, c(shape = 0.6, scale = 450))
fit("rivers", "three-parameter lognormal", dlnorm3, c(meanlog = 6, sdlog = 0.7, location = 50))
fit("rivers", "generalised extreme value", dgev, c(location = 400, scale = 200, shape = 0.3))
fit("wind", "normal", "norm", c(mean = 10, sd = 3))
fit("wind", "logistic", "logis", c(location = 10, scale = 2))
fit("wind", "Cauchy", "cauchy", c(location = 10, scale = 2))
fit("wind", "Weibull", "weibull", c(shape = 3, scale = 11))
fit("wind", "Rayleigh", drayleigh, c(scale = 7))
fit("wind", "Nakagami", dnakagami, c(shape = 2, spread = 110))
fit("wind", "gamma", function(x, shape, scale) dgamma(x, shape, scale = scale), c(shape = 7, scale = 1.4))
fit("wind", "three-parameter Weibull", dweibull3, c(shape = 2.5, scale = 10, location = 0.5))
fit("wind", "Pearson III", dgamma3, c(shape = 20, scale = 0.8, location = -5))
fit("nile", "normal", "norm", c(mean = 900, sd = 150))
fit("nile", "Gumbel", dgumbel, c(location = 850, scale = 150))
fit("nile", "extreme value of minima", dgumbelmin, c(location = 1000, scale = 160))
fit("nile", "generalised extreme value", dgev, c(location = 850, scale = 150, shape = -0.1))
fit("maxima", "generalised extreme value", dgev, c(location = 1000, scale = 100, shape = -0.1))
fit("returns", "Johnson SU", dsu, c(gamma = 0.1, delta = 1.4, location = 0, scale = 0.01))
fit("returns", "logistic", "logis", c(location = 0, scale = 0.005))
fit("precip", "logistic", "logis", c(location = 35, scale = 8))
fit("islands", "Lomax", dlomax, c(shape = 0.8, scale = 50))
fit("islands", "lognormal", "lnorm", c(meanlog = 4, sdlog = 1.5))
fit("waiting", "normal", "norm", c(mean = 70, sd = 13))
fit("waiting", "exponential", "exp", c(rate = 0.014))
fit("magnitudes", "Gumbel", dgumbel, c(location = 4.4, scale = 0.3))
fit("magnitudes", "gamma", function(x, shape, scale) dgamma(x, shape, scale = scale), c(shape = 130, scale = 0.035))
fit("wind", "generalised gamma", dgengamma, c(shape = 1.5, power = 2.2, scale = 9))
fit("shares", "beta", "beta", c(shape1 = 8, shape2 = 4))
fit("shares", "Kumaraswamy", dkumaraswamy, c(a = 5, b = 6))
fit("discoveries", "Poisson", "pois", c(lambda = 3))
fit("discoveries", "geometric", "geom", c(prob = 0.25))
negative_binomial <- function(x, size, prob) dnbinom(x, size, prob = prob)
fit("discoveries", "negative binomial", negative_binomial, c(size = 4, prob = 0.6))
fit("stations", "negative binomial", negative_binomial, c(size = 3, prob = 0.1))
fit("insects", "negative binomial", negative_binomial, c(size = 2, prob = 0.2))
fit("absences", "negative binomial", negative_binomial, c(size = 1, prob = 0.07))

test <- function(sample, distribution, p, q, ...) {
  x <- samples[[sample]]
  stated <- unname(unlist(list(...)))
  result <- suppressWarnings(ks.test(x, p, ..., exact = TRUE))
  put("k", sample, distribution, number(result$statistic), number(result$p.value), number(stated))
  result <- ad.test(x, p, ..., estimated = FALSE)
  put("a", sample, distribution, number(result$statistic), number(result$p.value), number(stated))
  classes <- floor(min(2 * length(x)^0.4, length(x) / 5))
  counts <- table(cut(get(p)(x, ...), seq(0, 1, length.out = classes + 1), right = FALSE))
  result <- chisq.test(counts)
  put("c", sample, distribution, number(result$statistic), number(result$p.value), number(stated))
}
test("rivers", "lognormal", "plnorm", qlnorm, meanlog = 6.1, sdlog = 0.6)
test("wind", "normal", "pnorm", qnorm, mean = 10.2, sd = 3.3)
test("nile", "normal", "pnorm", qnorm, mean = 930, sd = 160)
test("precip", "logistic", "plogis", qlogis, location = 36, scale = 7)
test("precip", "normal", "pnorm", qnorm, mean = 20, sd = 10)
test("maxima", "normal", "pnorm", qnorm, mean = 1100, sd = 120)
test("waiting", "normal", "pnorm", qnorm, mean = 71, sd = 13.5)
for (a in c(0.2, 0.6, 1, 1.6, 2.5, 4, 7)) {
  for (n in c(8, 40)) put("g", n, a, number(pAD(a, n, lower.tail = FALSE)))
  put("g", 1e9, a, number(pAD(a, lower.tail = FALSE, fast = FALSE)))
}
