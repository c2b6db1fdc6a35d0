#!/usr/bin/env python3
"""Writes accuracy.csv: values of the five distributions from arbitrary-precision arithmetic (mpmath).

Columns: distribution, its parameters a and b (empty when there is none), the request code, the
argument, the value, and the condition number of the value in the argument: by how many units an
error of one unit in the argument's last place moves the value's. Arguments are written as the
doubles they are. Discrete quantiles come from bisection, on the cumulative probabilities or upper
tails as the doubles nearest to them.

The incomplete gamma and beta functions are summed here by series whose terms are all positive, at a
precision that leaves 60 digits however small the complement is.
"""
import sys
from math import lgamma
from mpmath import mp, mpf

DENSITY, CUMULATIVE, QUANTILE, UPPER_TAIL, UPPER_QUANTILE = 2, 3, 4, 6, 7
mp.dps = 400


def series(term, ratio):
    total, k = term, 0
    while True:
        term *= ratio(k)
        total += term
        k += 1
        if term < total * mpf(10) ** -mp.dps:
            return total


def lower_gamma(a, x):
    """P(a, x)."""
    if x <= 0:
        return mpf(0)
    front = mp.exp(a * mp.log(x) - x - mp.loggamma(a + 1))
    return front * series(mpf(1), lambda k: x / (a + 1 + k))


def terms(a, b, x):
    """How many terms the series of lower_beta needs, to a factor of two."""
    a, b, log_x, k = float(a), float(b), float(mp.log(x)), 1
    start = lgamma(a + b) - lgamma(a + 1)
    while k < 1 << 40 and k * log_x + lgamma(a + b + k) - lgamma(a + 1 + k) - start > -2.31 * mp.dps:
        k *= 2
    return k


def lower_beta(a, b, x, y):
    """I_x(a, b) with y = 1 - x, by whichever of the two series is shorter."""
    if x <= 0:
        return mpf(0)
    if y <= 0:
        return mpf(1)
    if terms(a, b, x) > terms(b, a, y):
        return 1 - lower_beta(b, a, y, x)
    log_beta = mp.loggamma(a) + mp.loggamma(b) - mp.loggamma(a + b)
    front = mp.exp(a * mp.log(x) + b * mp.log(y) - log_beta) / a
    return front * series(mpf(1), lambda k: x * (a + b + k) / (a + 1 + k))


class Normal:
    support = None

    def __init__(self, mean, deviation):
        self.mean, self.deviation = mpf(mean), mpf(deviation)

    def density(self, x):
        z = (x - self.mean) / self.deviation
        return mp.exp(-z * z / 2) / (self.deviation * mp.sqrt(2 * mp.pi))

    def cumulative(self, x):
        return mp.erfc((self.mean - x) / self.deviation / mp.sqrt(2)) / 2

    def upper(self, x):
        return mp.erfc((x - self.mean) / self.deviation / mp.sqrt(2)) / 2


class Student:
    support = None

    def __init__(self, df, _):
        self.df = mpf(df)

    def density(self, x):
        v = self.df
        return mp.exp(mp.loggamma((v + 1) / 2) - mp.loggamma(v / 2)
                      - (v + 1) / 2 * mp.log(1 + x * x / v)) / mp.sqrt(v * mp.pi)

    def upper(self, x):
        v = self.df
        half = lower_beta(v / 2, mpf(1) / 2, v / (v + x * x), x * x / (v + x * x)) / 2
        return half if x >= 0 else 1 - half

    def cumulative(self, x):
        return self.upper(-x)


class Chisq:
    support = 0

    def __init__(self, df, _):
        self.df = mpf(df)

    def density(self, x):
        a = self.df / 2
        return mp.exp((a - 1) * mp.log(x / 2) - x / 2 - mp.loggamma(a)) / 2

    def cumulative(self, x):
        return lower_gamma(self.df / 2, x / 2)

    def upper(self, x):
        return 1 - self.cumulative(x)


class F:
    support = 0

    def __init__(self, df1, df2):
        self.m, self.n = mpf(df1), mpf(df2)

    def parts(self, x):
        total = self.n + self.m * x
        return self.m * x / total, self.n / total

    def density(self, x):
        a, b = self.m / 2, self.n / 2
        u, w = self.parts(x)
        log_beta = mp.loggamma(a) + mp.loggamma(b) - mp.loggamma(a + b)
        return mp.exp(a * mp.log(u) + b * mp.log(w) - log_beta) / x

    def cumulative(self, x):
        u, w = self.parts(x)
        return lower_beta(self.m / 2, self.n / 2, u, w)

    def upper(self, x):
        u, w = self.parts(x)
        return lower_beta(self.n / 2, self.m / 2, w, u)


def as_double(value):
    """The nearest double, exactly: a probability reaches another when its double does."""
    return mpf(float(value))


class Binomial:
    def __init__(self, n, p):
        self.n, self.p = n, mpf(p)

    def density(self, k):
        n, k = mpf(self.n), mpf(int(k))
        log_choose = mp.loggamma(n + 1) - mp.loggamma(k + 1) - mp.loggamma(n - k + 1)
        return mp.exp(log_choose + k * mp.log(self.p) + (n - k) * mp.log(1 - self.p))

    def cumulative(self, k):
        return lower_beta(mpf(self.n) - k, mpf(k) + 1, 1 - self.p, self.p)

    def upper(self, k):
        return lower_beta(mpf(k) + 1, mpf(self.n) - k, self.p, 1 - self.p)

    def quantile(self, p, upper):
        low, high = -1, self.n
        while high - low > 1:
            middle = (low + high) // 2
            reached = as_double(self.upper(middle)) <= p if upper else as_double(self.cumulative(middle)) >= p
            low, high = (low, middle) if reached else (middle, high)
        return high


def quantile(distribution, p, upper):
    """Bisection on a bracket of doubles' size, then Newton in the logarithm of the probability."""
    f = distribution.upper if upper else distribution.cumulative
    scale = mpf(1)
    above = lambda x: (f(x) <= p) if upper else (f(x) >= p)
    if distribution.support is None:
        if isinstance(distribution, Normal):
            scale = distribution.deviation
        centre = getattr(distribution, "mean", mpf(0))
        low, high = centre - scale, centre + scale
        while above(low):
            low = centre - 2 * (centre - low)
        while not above(high):
            high = centre + 2 * (high - centre)
    else:
        low = high = mpf(1)
        while above(low):
            low /= 4
        while not above(high):
            high *= 4
    for _ in range(24):
        middle = mp.sqrt(low * high) if low > 0 and high / low > 2 else (low + high) / 2
        low, high = (low, middle) if above(middle) else (middle, high)
    x, sign = (low + high) / 2, -1 if upper else 1
    for _ in range(12):
        value = f(x)
        step = sign * value * mp.log(value / p) / distribution.density(x)
        x -= step
        if abs(step) <= abs(x) * mpf(10) ** -40:
            return x
    raise ArithmeticError("no convergence")


def digits_for(smallest):
    return 60 + max(0, int(-mp.log10(smallest)) + 1)


def row(name, a, b, request, x, value, condition):
    value_text = str(value) if isinstance(value, int) else mp.nstr(value, 21, min_fixed=1, max_fixed=0)
    return ",".join([name, a, b, str(request), repr(x), value_text, mp.nstr(condition, 4)])


def continuous_rows(name, kind, a, b, points, probabilities):
    distribution = kind(a, b if b != "" else 0)
    texts = repr(a), repr(b) if b != "" else ""
    for x in points:
        exact = mpf(x)
        mp.dps = 420
        density = distribution.density(exact)
        yield row(name, *texts, DENSITY, x, density,
                  abs(exact * mp.diff(lambda t: mp.log(distribution.density(t)), exact)))
        for request, f in (CUMULATIVE, distribution.cumulative), (UPPER_TAIL, distribution.upper):
            value = f(exact)
            if value > mpf(10) ** -307:
                yield row(name, *texts, request, x, value, abs(exact * density / value))
    for p in probabilities:
        for request in QUANTILE, UPPER_QUANTILE:
            mp.dps = digits_for(mpf(p))
            x = quantile(distribution, mpf(p), request == UPPER_QUANTILE)
            if abs(x) < mpf(10) ** -300 or abs(x) > mpf(10) ** 300:
                continue
            yield row(name, *texts, request, p, x, abs(mpf(p) / (x * distribution.density(x))))


def binomial_rows(n, p, points, probabilities):
    distribution, texts = Binomial(n, p), (str(n), repr(p))
    for k in points:
        mp.dps = 420
        yield row("binomial", *texts, DENSITY, float(k), distribution.density(k), 0)
        for request, f in (CUMULATIVE, distribution.cumulative), (UPPER_TAIL, distribution.upper):
            value = f(k)
            if value > mpf(10) ** -307:
                yield row("binomial", *texts, request, float(k), value, 0)
    for probability in probabilities:
        mp.dps = digits_for(mpf(probability))
        for request in QUANTILE, UPPER_QUANTILE:
            k = distribution.quantile(mpf(probability), request == UPPER_QUANTILE)
            yield row("binomial", *texts, request, probability, k, 0)


def below_one_rows():
    """Degrees of freedom below 1, where the quantiles of most probabilities are no doubles."""
    some = [1e-3, 0.025, 0.7, 0.999]
    for df, points in ((0.9, [-1e8, -2.3, 1e-6, 0.7, 40.1]), (0.5, [-30.2, 1e-9, 0.3, 1e12]), (0.1, [-5.1, 0.01, 1e30])):
        yield from continuous_rows("student", Student, df, "", points, some)
    for df, points in ((0.9, [1e-20, 0.3, 7.7]), (0.3, [1e-100, 0.01, 2.2, 60.3]), (0.02, [1e-200, 1e-3, 3.1])):
        yield from continuous_rows("chisq", Chisq, df, "", points, some)
    for df1, df2, points in ((0.5, 3.0, [1e-10, 0.2, 5.3, 1e4]), (3.0, 0.5, [1e-4, 0.6, 4.1, 1e9]),
                             (0.3, 0.2, [1e-30, 0.4, 1.0, 1e20]), (0.8, 1e4, [1e-6, 0.4, 3.3, 20.1]),
                             (1e4, 0.8, [0.05, 0.4, 3.3, 1e5]), (0.05, 500.0, [1e-40, 0.1, 60.3]),
                             (500.0, 0.05, [0.02, 0.3, 11.3])):
        yield from continuous_rows("f", F, df1, df2, points, some)


def all_rows():
    some, tails = [1e-300, 1e-12, 0.025, 0.7], [1e-300, 1e-100, 1e-20, 1e-5, 0.3, 0.975]
    yield from continuous_rows("normal", Normal, 0.0, 1.0,
                               [-37.5, -30.3, -20.1, -8.7, -1.96, -0.1, 1e-10, 0.7, 3.3, 12.7, 37.5], tails)
    yield from continuous_rows("normal", Normal, 3.7, 0.013, [3.3, 3.69, 3.7001, 4.1], some)
    for df, points in ((1.0, [-1e10, -3.1, -1e-10, 1e-5, 0.9, 1e150]), (2.0, [-1e8, -0.5, 1e-8, 4.3]),
                       (3.0, [-25.0, 0.02, 1e20]), (10.0, [-80.0, -2.2, 0.3, 1e10]),
                       (177.0, [-30.0, 1e-4, 2.0, 500.0]), (1e4, [-35.0, -1.3, 10.1]),
                       (1e6, [-37.0, -6.1, 0.4, 3.0, 30.3])):
        yield from continuous_rows("student", Student, df, "", points, some)
    for df, points in ((1.0, [1e-300, 1e-8, 0.4, 10.1, 1300.0]), (2.0, [1e-20, 1.1, 900.3]),
                       (3.0, [1e-10, 2.5, 300.7]), (10.0, [0.01, 9.1, 77.7]), (177.0, [20.3, 170.1, 700.9]),
                       (1e4, [7000.1, 9990.3, 13000.7]), (1e6, [960000.3, 999000.1, 1e6, 1003000.7, 1040000.9])):
        yield from continuous_rows("chisq", Chisq, df, "", points, some)
    for df1, df2, points in ((1.0, 1.0, [1e-12, 0.5, 1e12]), (1.0, 10.0, [1e-9, 4.1, 1e6]),
                             (2.0, 3.0, [0.001, 9.3]), (7.0, 2.0, [0.01, 50.1]),
                             (10.0, 20.0, [0.03, 0.97, 30.1]), (1e4, 5.0, [0.05, 1.3, 300.7]),
                             (3.0, 1e6, [0.002, 2.6, 100.3]), (1e6, 1e6, [0.93, 0.999, 1.0, 1.0021, 1.06]),
                             (49.0, 28.0, [0.8324946704734448])):
        yield from continuous_rows("f", F, df1, df2, points, some)
    yield from below_one_rows()
    discrete = [1e-300, 1e-50, 1e-9, 0.024, 0.51, 0.975, 1 - 1e-12, 1 - 2.0**-53]
    for n, p, points in ((1, 0.3, [0]), (10, 0.5, [0, 3, 9]), (12, 1e-5, [0, 2, 11]),
                         (250, 0.99, [120, 247]), (1000, 0.001, [0, 1, 40]), (10000, 0.37, [2900, 3700, 4600]),
                         (1000000, 0.5, [482000, 499500, 500000, 501300, 517000]),
                         (1000000, 1e-6, [0, 1, 30]), (1000000, 0.997, [995500, 997010, 998500]),
                         (794804, 0.3272414146871332, [259790])):
        yield from binomial_rows(n, p, points, discrete)


if __name__ == "__main__":
    print("distribution,a,b,request,argument,value,condition")
    for line in all_rows():
        print(line)
        sys.stdout.flush()
