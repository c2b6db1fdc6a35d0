"""The discrete distributions once more, for make_accuracy.py."""
from mpmath import mp, mpf

from continuous import exp, lower_beta, lower_gamma


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


DISCRETE = {
    "Bernoulli": (lambda p: binomial(1, p), [(0.3,), (1e-9,), (0.999,), (0.5,), (1 - 2.0**-53,)]),
    "binomial": (binomial, [(12.0, 0.3), (1000.0, 0.001), (250.0, 0.99)]),
    "discrete uniform": (discrete_uniform, [(1.0, 6.0), (-1e9, 1e9), (7.0, 7.0), (-5.0, 1e15)]),
    "geometric": (geometric, [(0.3,), (0.001,), (0.999,), (0.01,), (1e-9,)]),
    "negative binomial": (negative_binomial, [(2.5, 0.4), (0.01, 0.05), (300.0, 0.9), (5000.0, 0.3)]),
    "Poisson": (poisson, [(3.5,), (1e-5,), (200.0,)]),
}
