"""The discrete distributions once more, for make_accuracy.py."""
from itertools import accumulate

from mpmath import mp, mpf

from continuous import exp, log_beta, lower_beta, lower_gamma


class Discrete:
    """A distribution on whole numbers: probability, cumulative probability and upper tail."""

    def __init__(self, probability, lower, upper, low=0, high=None, most=None):
        self.probability, self.lower, self.upper, self.low, self.high = probability, lower, upper, low, high
        self.most = high if most is None else most  # the last value that is known

    def quantile(self, p, upper):
        """Exactly, for the probabilities as the doubles nearest to them; nothing if it is not known."""
        reached = lambda k: float(self.upper(k)) <= p if upper else float(self.lower(k)) >= p
        low, high, stride = self.low - 1, self.low, 1
        while not reached(high):
            if high == self.most:
                return None
            low, high, stride = high, high + stride if self.most is None else min(high + stride, self.most), 2 * stride
        while high - low > 1:
            middle = (low + high) // 2
            low, high = (low, middle) if reached(middle) else (middle, high)
        return high


def binomial(n, p):
    n, p = int(n), mpf(p)
    return Discrete(lambda k: mp.binomial(n, k) * p**k * (1 - p) ** (n - k),
                    lambda k: lower_beta(mpf(n) - k, mpf(k) + 1, 1 - p, p) if k < n else mpf(1),
                    lambda k: lower_beta(mpf(k) + 1, mpf(n) - k, p, 1 - p) if k < n else mpf(0), 0, n)


def geometric(p):
    q = 1 - mpf(p)
    return Discrete(lambda k: p * q**k, lambda k: 1 - q ** (k + 1), lambda k: q ** (k + 1))


def negative_binomial(r, p):
    r, p = mpf(r), mpf(p)
    return Discrete(lambda k: exp(mp.loggamma(r + k) - mp.loggamma(r) - mp.loggamma(k + 1) + r * mp.log(p)
                                  + k * mp.log(1 - p)),
                    lambda k: lower_beta(r, mpf(k) + 1, p, 1 - p), lambda k: lower_beta(mpf(k) + 1, r, 1 - p, p))


def poisson(mean):
    mean = mpf(mean)
    return Discrete(lambda k: exp(k * mp.log(mean) - mean - mp.loggamma(k + 1)),
                    lambda k: 1 - lower_gamma(mpf(k) + 1, mean), lambda k: lower_gamma(mpf(k) + 1, mean))


def discrete_uniform(a, b):
    a, b = int(a), int(b)
    count = mpf(b - a + 1)
    return Discrete(lambda k: 1 / count, lambda k: (k - a + 1) / count, lambda k: (b - k) / count, a, b)


def sums(low, high, probability, ratio):
    """Tails as sums over neighbours; ratio(k) is f(k + 1) / f(k)."""
    def lower(k):
        return probability(k) * terms(lambda j: 1 / ratio(k - j - 1), k - low)

    def upper(k):
        return probability(k + 1) * terms(lambda j: ratio(k + j + 1), high - k - 1) if k < high else mpf(0)
    return Discrete(probability, lower, upper, low, high)


def terms(ratio, count):
    """1 + ratio(0) + ratio(0) ratio(1) + ..., up to where nothing is left."""
    total = term = mpf(1)
    smallest = mpf(10) ** (-mp.dps - 5)
    for j in range(count):
        factor = ratio(j)
        term *= factor
        total += term
        if factor < 1 and term < (1 - factor) * smallest * total:
            break
    return total


def hypergeometric(n, successes, population):
    n, good, bad = int(n), int(successes), int(population - successes)
    total = mp.binomial(good + bad, n)
    return sums(max(0, n - bad), min(n, good), lambda k: mp.binomial(good, k) * mp.binomial(bad, n - k) / total,
                lambda k: mpf((good - k) * (n - k)) / ((k + 1) * (bad - n + k + 1)))


def beta_binomial(n, a, b):
    n, a, b = int(n), mpf(a), mpf(b)
    front = mp.loggamma(n + 1) - log_beta(a, b) - mp.loggamma(a + b + n)

    def probability(k):
        return exp(front - mp.loggamma(k + 1) - mp.loggamma(n - k + 1) + mp.loggamma(k + a) + mp.loggamma(n - k + b))
    return sums(0, n, probability, lambda k: (n - k) * (k + a) / ((k + 1) * (n - k - 1 + b)))


def negative_hypergeometric(failures, successes, population):
    return beta_binomial(successes, failures, population - successes - failures + 1)


def from_start(low, first, ratio, most):
    """On infinitely many values from `low`: the lower tails up to `most` as sums, the upper tails what they leave."""
    values, sums = [], []
    with mp.workdps(420):
        value, total = first(), mpf(0)
        for k in range(low, most + 1):
            total += value
            values.append(value)
            sums.append(total)
            value *= ratio(k)
    return Discrete(lambda k: values[k - low], lambda k: sums[k - low], lambda k: 1 - sums[k - low], low, most=most)


def borel(mean):
    mean = mpf(mean)
    front = mean * exp(-mean)
    return from_start(1, lambda: exp(-mean), lambda n: front * ((n + 1) / mpf(n)) ** (n - 1), 20000)


def logarithmic(p):
    p = mpf(p)
    return from_start(1, lambda: p / -mp.log(1 - p), lambda k: p * k / (k + 1), 70000)


def yule_simon(shape):
    a = mpf(shape)
    upper = lambda k: exp(mp.loggamma(mpf(k) + 1) + mp.loggamma(a + 1) - mp.loggamma(k + a + 1))
    return Discrete(lambda k: upper(k - 1) * a / (k + a), lambda k: 1 - upper(k), upper, 1, most=2**1000)


def zipf(exponent, count):
    s, n = mpf(exponent), int(count)

    def between(low, high):
        """low^-s + ... + high^-s"""
        if s == 1:
            return mp.digamma(high + 1) - mp.digamma(low)
        return mp.zeta(s, low) - mp.zeta(s, high + 1)
    total = between(1, n)
    return Discrete(lambda k: mpf(k) ** -s / total, lambda k: between(1, k) / total,
                    lambda k: between(k + 1, n) / total if k < n else mpf(0), 1, n)


def zeta(exponent):
    s = mpf(exponent)
    total = mp.zeta(s)
    upper = lambda k: mp.zeta(s, k + 1) / total
    return Discrete(lambda k: mpf(k) ** -s / total, lambda k: 1 - upper(k), upper, 1, most=2**1000)


def skellam(mean1, mean2):
    """From Bessel functions by their recurrence downwards, which leaves a factor; the probabilities' sum is 1."""
    with mp.workdps(400):
        a, b = mpf(mean1), mpf(mean2)
        n, z = int(abs(mean1 - mean2) + 60 * (mean1 + mean2) ** 0.5) + 500, 2 * mp.sqrt(a * b)
        bessel = [mpf(0), mpf(1)]
        for k in range(2 * n, 0, -1):
            bessel.append(bessel[-2] + 2 * k / z * bessel[-1])
        bessel.reverse()
        root = mp.sqrt(a / b)
        power, values = root**-n, []
        for k in range(-n, n + 1):
            values.append(power * bessel[abs(k)])
            power *= root
        total = sum(values)
        lower = list(accumulate(value / total for value in values))
        upper = list(accumulate(value / total for value in reversed(values)))[::-1] + [mpf(0)]
    return Discrete(lambda k: values[k + n] / total, lambda k: lower[k + n], lambda k: upper[k + n + 1], -n, n)


def beta_negative_binomial(r, a, b):
    r, a, b = mpf(r), mpf(a), mpf(b)
    front = mp.loggamma(a + r) + mp.loggamma(a + b) - mp.loggamma(a) - mp.loggamma(a + b + r)
    if r != int(r):
        return from_start(0, lambda: exp(front), lambda k: (k + r) * (k + b) / ((k + a + b + r) * (k + 1)), 30000)

    def probability(k):
        return exp(front + mp.loggamma(k + r) - mp.loggamma(r) - mp.loggamma(mpf(k) + 1) + mp.loggamma(k + b)
                   - mp.loggamma(b) + mp.loggamma(a + b + r) - mp.loggamma(k + a + b + r))

    def upper(k):
        """More than k failures: fewer than r successes among r + k trials of a beta-binomial distribution."""
        return beta_binomial(r + k, a, b).lower(int(r) - 1)
    return Discrete(probability, lambda k: 1 - upper(k), upper, most=2**1000)


DISCRETE = {
    "Bernoulli": (lambda p: binomial(1, p), [(0.3,), (1e-9,), (0.999,), (0.5,), (1 - 2.0**-53,)]),
    "beta-binomial": (beta_binomial, [(40.0, 2.5, 4.0), (1000.0, 0.3, 0.05), (5000.0, 1e6, 3e5), (10.0, 1e-12, 7.0),
                                      (300.0, 80.0, 1e-5)]),
    "beta-negative-binomial": (beta_negative_binomial, [
        (3.0, 60.0, 20.0), (2.0, 0.7, 5.5), (2.5, 4.0, 7.0), (0.3, 0.01, 12.0), (300.0, 30.0, 700.0),
        (1000.0, 1000.0, 1000.0), (5.0, 1.5, 1e-6), (3.0, 0.01, 1000.0), (1000.0, 2.0, 3000.0)]),
    "binomial": (binomial, [(12.0, 0.3), (1000.0, 0.001), (250.0, 0.99)]),
    "Borel": (borel, [(0.3,), (0.02,), (0.8,), (0.99,), (1.0,)]),
    "discrete uniform": (discrete_uniform, [(1.0, 6.0), (-1e9, 1e9), (7.0, 7.0), (-5.0, 1e15)]),
    "geometric": (geometric, [(0.3,), (0.001,), (0.999,), (0.01,), (1e-9,)]),
    "hypergeometric": (hypergeometric, [(30.0, 40.0, 100.0), (5000.0, 3e4, 1e5), (40.0, 5e7, 1e8), (9e7, 80.0, 1e8),
                                        (1e4, 1e6, 1e8), (3.0, 1.0, 4.0), (9.0, 4.0, 9.0)]),
    "logarithmic": (logarithmic, [(0.6,), (1e-9,), (0.99,), (1 - 1e-9,), (1 - 2.0**-53,)]),
    "negative binomial": (negative_binomial, [(2.5, 0.4), (0.01, 0.05), (300.0, 0.9), (5000.0, 0.3)]),
    "negative hypergeometric": (negative_hypergeometric, [(4.0, 60.0, 100.0), (1.0, 99.0, 100.0), (50.0, 9e7, 1e8),
                                                          (2000.0, 3000.0, 1e4)]),
    "Poisson": (poisson, [(3.5,), (1e-5,), (200.0,), (1e5,)]),
    "Skellam": (skellam, [(3.0, 2.0), (1e-5, 4.0), (0.01, 0.02), (200.0, 0.5), (400.0, 5000.0), (3e5, 2.9e5)]),
    "Yule-Simon": (yule_simon, [(50.0,), (0.7,), (1e-9,), (3.0,), (1e6,)]),
    "zeta": (zeta, [(12.0,), (1.001,), (2.5,), (1.2,), (300.0,)]),
    "Zipf": (zipf, [(1.3, 200.0), (0.0, 1e6), (1.0, 2.0**53), (0.5, 1e12), (5.0, 1000.0), (40.0, 1e9)]),
}
