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
    front = mp.exp(a * mp.log(x) + b * mp.log(y) - log_beta(a, b)) / a
    return front * series(mpf(1), lambda k: x * (a + b + k) / (a + 1 + k))


def log_beta(a, b):
    return mp.loggamma(a) + mp.loggamma(b) - mp.loggamma(a + b)


class Distribution:
    """density, cumulative and upper, and where values begin, if anywhere."""

    def __init__(self, density, cumulative, upper, support=0, centre=0, scale=1):
        self.density, self.cumulative, self.upper = density, cumulative, upper
        self.support, self.centre, self.scale = support, centre, scale


def normal(mean, deviation):
    mean, deviation = mpf(mean), mpf(deviation)
    z = lambda x: (x - mean) / deviation
    return Distribution(lambda x: mp.exp(-z(x) ** 2 / 2) / (deviation * mp.sqrt(2 * mp.pi)),
                        lambda x: mp.erfc(-z(x) / mp.sqrt(2)) / 2, lambda x: mp.erfc(z(x) / mp.sqrt(2)) / 2,
                        None, mean, deviation)


def student(df, _):
    v = mpf(df)

    def upper(x):
        half = lower_beta(v / 2, mpf(1) / 2, v / (v + x * x), x * x / (v + x * x)) / 2
        return half if x >= 0 else 1 - half

    return Distribution(lambda x: mp.exp(mp.loggamma((v + 1) / 2) - mp.loggamma(v / 2)
                                         - (v + 1) / 2 * mp.log(1 + x * x / v)) / mp.sqrt(v * mp.pi),
                        lambda x: upper(-x), upper, None)


def chisq(df, _):
    a = mpf(df) / 2
    cumulative = lambda x: lower_gamma(a, x / 2)
    return Distribution(lambda x: mp.exp((a - 1) * mp.log(x / 2) - x / 2 - mp.loggamma(a)) / 2, cumulative,
                        lambda x: 1 - cumulative(x))


def f(df1, df2):
    m, n = mpf(df1), mpf(df2)
    a, b = m / 2, n / 2
    u, w = lambda x: m * x / (n + m * x), lambda x: n / (n + m * x)
    return Distribution(lambda x: mp.exp(a * mp.log(u(x)) + b * mp.log(w(x)) - log_beta(a, b)) / x,
                        lambda x: lower_beta(a, b, u(x), w(x)), lambda x: lower_beta(b, a, w(x), u(x)))


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
            # The nearest double, exactly: a probability reaches another when its double does.
            double = mpf(float(self.upper(middle) if upper else self.cumulative(middle)))
            low, high = (low, middle) if (double <= p if upper else double >= p) else (middle, high)
        return high


def quantile(of, p, upper):
    """Bisection on a bracket of doubles' size, then Newton in the logarithm of the probability."""
    function = of.upper if upper else of.cumulative
    above = lambda x: (function(x) <= p) if upper else (function(x) >= p)
    if of.support is None:
        low, high = of.centre - of.scale, of.centre + of.scale
        while above(low):
            low = of.centre - 2 * (of.centre - low)
        while not above(high):
            high = of.centre + 2 * (high - of.centre)
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
        value = function(x)
        step = sign * value * mp.log(value / p) / of.density(x)
        x -= step
        if abs(step) <= abs(x) * mpf(10) ** -40:
            return x
    raise ArithmeticError("no convergence")


def digits_for(smallest):
    return 60 + max(0, int(-mp.log10(smallest)) + 1)


def row(name, a, b, request, x, value, condition):
    value_text = str(value) if isinstance(value, int) else mp.nstr(value, 21, min_fixed=1, max_fixed=0)
    return ",".join([name, a, b, str(request), repr(x), value_text, mp.nstr(condition, 4)])


def rows_of_values(texts, of, points, conditions):
    """Densities and tails; `conditions` gives those of the density and of a tail by its value and density."""
    for x in points:
        mp.dps = 420
        density = of.density(mpf(x))
        yield row(*texts, DENSITY, x, density, conditions(of, mpf(x), None, density))
        for request, function in (CUMULATIVE, of.cumulative), (UPPER_TAIL, of.upper):
            value = function(mpf(x))
            if value > mpf(10) ** -307:
                yield row(*texts, request, x, value, conditions(of, mpf(x), value, density))


def condition(of, x, value, density):
    if value is None:
        return abs(x * mp.diff(lambda t: mp.log(of.density(t)), x))
    return abs(x * density / value)


def continuous_rows(name, kind, a, b, points, probabilities):
    of, texts = kind(a, b if b != "" else 0), (name, repr(a), repr(b) if b != "" else "")
    yield from rows_of_values(texts, of, points, condition)
    for p in probabilities:
        for request in QUANTILE, UPPER_QUANTILE:
            mp.dps = digits_for(mpf(p))
            x = quantile(of, mpf(p), request == UPPER_QUANTILE)
            if mpf(10) ** -300 <= abs(x) <= mpf(10) ** 300:
                yield row(*texts, request, p, x, abs(mpf(p) / (x * of.density(x))))


def binomial_rows(n, p, points, probabilities):
    of, texts = Binomial(n, p), ("binomial", str(n), repr(p))
    yield from rows_of_values(texts, of, [float(k) for k in points], lambda *_: 0)
    for probability in probabilities:
        mp.dps = digits_for(mpf(probability))
        for request in QUANTILE, UPPER_QUANTILE:
            yield row(*texts, request, probability, of.quantile(mpf(probability), request == UPPER_QUANTILE), 0)


def below_one_rows():
    """Degrees of freedom below 1, where the quantiles of most probabilities are no doubles."""
    some = [1e-3, 0.025, 0.7, 0.999]
    for df, points in ((0.9, [-1e8, -2.3, 1e-6, 0.7, 40.1]), (0.5, [-30.2, 1e-9, 0.3, 1e12]), (0.1, [-5.1, 0.01, 1e30])):
        yield from continuous_rows("student", student, df, "", points, some)
    for df, points in ((0.9, [1e-20, 0.3, 7.7]), (0.3, [1e-100, 0.01, 2.2, 60.3]), (0.02, [1e-200, 1e-3, 3.1])):
        yield from continuous_rows("chisq", chisq, df, "", points, some)
    for df1, df2, points in ((0.5, 3.0, [1e-10, 0.2, 5.3, 1e4]), (3.0, 0.5, [1e-4, 0.6, 4.1, 1e9]),
                             (0.3, 0.2, [1e-30, 0.4, 1.0, 1e20]), (0.8, 1e4, [1e-6, 0.4, 3.3, 20.1]),
                             (1e4, 0.8, [0.05, 0.4, 3.3, 1e5]), (0.05, 500.0, [1e-40, 0.1, 60.3]),
                             (500.0, 0.05, [0.02, 0.3, 11.3])):
        yield from continuous_rows("f", f, df1, df2, points, some)


def all_rows():
    some, tails = [1e-300, 1e-12, 0.025, 0.7], [1e-300, 1e-100, 1e-20, 1e-5, 0.3, 0.975]
    yield from continuous_rows("normal", normal, 0.0, 1.0,
                               [-37.5, -30.3, -20.1, -8.7, -1.96, -0.1, 1e-10, 0.7, 3.3, 12.7, 37.5], tails)
    yield from continuous_rows("normal", normal, 3.7, 0.013, [3.3, 3.69, 3.7001, 4.1], some)
    for df, points in ((1.0, [-1e10, -3.1, -1e-10, 1e-5, 0.9, 1e150]), (2.0, [-1e8, -0.5, 1e-8, 4.3]),
                       (3.0, [-25.0, 0.02, 1e20]), (10.0, [-80.0, -2.2, 0.3, 1e10]),
                       (177.0, [-30.0, 1e-4, 2.0, 500.0]), (1e4, [-35.0, -1.3, 10.1]),
                       (1e6, [-37.0, -6.1, 0.4, 3.0, 30.3])):
        yield from continuous_rows("student", student, df, "", points, some)
    for df, points in ((1.0, [1e-300, 1e-8, 0.4, 10.1, 1300.0]), (2.0, [1e-20, 1.1, 900.3]),
                       (3.0, [1e-10, 2.5, 300.7]), (10.0, [0.01, 9.1, 77.7]), (177.0, [20.3, 170.1, 700.9]),
                       (1e4, [7000.1, 9990.3, 13000.7]), (1e6, [960000.3, 999000.1, 1e6, 1003000.7, 1040000.9])):
        yield from continuous_rows("chisq", chisq, df, "", points, some)
    for df1, df2, points in ((1.0, 1.0, [1e-12, 0.5, 1e12]), (1.0, 10.0, [1e-9, 4.1, 1e6]),
                             (2.0, 3.0, [0.001, 9.3]), (7.0, 2.0, [0.01, 50.1]),
                             (10.0, 20.0, [0.03, 0.97, 30.1]), (1e4, 5.0, [0.05, 1.3, 300.7]),
                             (3.0, 1e6, [0.002, 2.6, 100.3]), (1e6, 1e6, [0.93, 0.999, 1.0, 1.0021, 1.06]),
                             (49.0, 28.0, [0.8324946704734448])):
        yield from continuous_rows("f", f, df1, df2, points, some)
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
