"""The discrete distributions once more, for make_accuracy.py."""
from mpmath import mp, mpf

from continuous import exp, log_beta, lower_beta, lower_gamma


class Discrete:
    """A distribution on whole numbers: probability, cumulative probability and upper tail."""

    def __init__(self, probability, lower, upper, low=0, high=None):
        self.probability, self.lower, self.upper, self.low, self.high = probability, lower, upper, low, high

    def quantile(self, p, upper):
        """Exactly, for the probabilities as the doubles nearest to them."""
        reached = lambda k: float(self.upper(k)) <= p if upper else float(self.lower(k)) >= p
        low, high, stride = self.low - 1, self.low, 1
        while not reached(high):
            low, high, stride = high, high + stride if self.high is None else min(high + stride, self.high), 2 * stride
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


DISCRETE = {
    "Bernoulli": (lambda p: binomial(1, p), [(0.3,), (1e-9,), (0.999,), (0.5,), (1 - 2.0**-53,)]),
    "beta-binomial": (beta_binomial, [(40.0, 2.5, 4.0), (1000.0, 0.3, 0.05), (5000.0, 1e6, 3e5), (10.0, 1e-12, 7.0),
                                      (300.0, 80.0, 1e-5)]),
    "binomial": (binomial, [(12.0, 0.3), (1000.0, 0.001), (250.0, 0.99)]),
    "discrete uniform": (discrete_uniform, [(1.0, 6.0), (-1e9, 1e9), (7.0, 7.0), (-5.0, 1e15)]),
    "geometric": (geometric, [(0.3,), (0.001,), (0.999,), (0.01,), (1e-9,)]),
    "hypergeometric": (hypergeometric, [(30.0, 40.0, 100.0), (5000.0, 3e4, 1e5), (40.0, 5e7, 1e8), (9e7, 80.0, 1e8),
                                        (1e4, 1e6, 1e8), (3.0, 1.0, 4.0)]),
    "negative binomial": (negative_binomial, [(2.5, 0.4), (0.01, 0.05), (300.0, 0.9), (5000.0, 0.3)]),
    "negative hypergeometric": (negative_hypergeometric, [(4.0, 60.0, 100.0), (1.0, 99.0, 100.0), (50.0, 9e7, 1e8),
                                                          (2000.0, 3000.0, 1e4)]),
    "Poisson": (poisson, [(3.5,), (1e-5,), (200.0,)]),
}
