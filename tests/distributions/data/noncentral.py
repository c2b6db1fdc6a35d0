"""The noncentral distributions once more, for continuous.py: by their textbook series, whose terms are all positive or
get enough digits."""
from mpmath import mp, mpf


def poisson_sums(step, ratio, upper, mean):
    """Both tails of a mixture whose component j has the weight of j in a Poisson distribution. The components' lower tails
    are the sums of the steps from j on, the first `step`, each the one before times `ratio`; `upper` is the first
    upper tail."""
    smallest = mpf(10) ** -mp.dps
    weight, j = mp.exp(-mean), 0
    tail, below, total_upper, total_lower = upper, mpf(0), mpf(0), mpf(0)
    while True:
        below += weight
        add_upper, add_lower = weight * tail, step * below
        total_upper += add_upper
        total_lower += add_lower
        if j > mean and add_upper < total_upper * smallest:
            # Where the upper tail is not close to 1, its complement is exact and the other series may be long.
            if total_upper < mpf(9) / 10:
                return 1 - total_upper, total_upper
            if add_lower < total_lower * smallest:
                return total_lower, total_upper
        tail += step
        step *= ratio(j)
        weight *= mean / (j + 1)
        j += 1


class Tails:
    """Both tails as functions of x, of which the last few values are kept: they are computed together."""

    def __init__(self, both):
        self.both, self.known = both, {}

    def at(self, x):
        key = (x, mp.prec)
        if key not in self.known:
            if len(self.known) > 50:
                self.known.clear()
            self.known[key] = self.both(x)
        return self.known[key]

    def lower(self, x):
        return self.at(x)[0]

    def upper(self, x):
        return self.at(x)[1]


def gamma_mixture(a, mean, y):
    if mp.sqrt(y) > mp.sqrt(mean) + mp.sqrt(a) + 40:
        return mpf(1), mpf(0)  # nothing is left there, and the sum's terms would be too many
    step = mp.exp(a * mp.log(y) - y - mp.loggamma(a + 1))
    return poisson_sums(step, lambda j: y / (a + j + 1), mp.gammainc(a, y, regularized=True), mean)


def beta_mixture(a, b, mean, x, y, lower_beta):
    step = mp.exp(a * mp.log(x) + b * mp.log(y) + mp.loggamma(a + b) - mp.loggamma(a + 1) - mp.loggamma(b))
    return poisson_sums(step, lambda j: x * (a + b + j) / (a + j + 1), lower_beta(b, a, y, x), mean)


def beta_mixture_density(a, b, mean, x, y, series):
    first = mp.exp(a * mp.log(x) + b * mp.log(y) + mp.loggamma(a + b) - mp.loggamma(a) - mp.loggamma(b) - mean)
    return first * series(lambda j: mean / (j + 1) * x * (a + b + j) / (a + j))


def with_digits_for(noncentrality):
    """What the alternating series lose if x and the noncentrality differ in sign, and complements."""
    return mp.workdps(mp.dps + 20 + min(int(32 * abs(noncentrality)), 300))


def upper_t(df, d, t, lower_beta):
    """For t > 0; d of both signs."""
    x, y = t * t / (df + t * t), df / (df + t * t)
    b, half = df / 2, d * d / 2
    total, smallest = mpf(0), mpf(10) ** -mp.dps
    for start, weight in (mpf(1) / 2, mp.exp(-half)), (mpf(1), d * mp.exp(-half) * mp.sqrt(2 / mp.pi)):
        tail = lower_beta(b, start, y, x)
        step = mp.exp(start * mp.log(x) + b * mp.log(y) + mp.loggamma(start + b) - mp.loggamma(start + 1)
                      - mp.loggamma(b))
        j, term = 0, weight
        while abs(term) > smallest * abs(total) or j <= half:
            term = weight * tail
            total += term
            tail += step
            step *= x * (start + b + j) / (start + j + 1)
            weight *= half / (j + start + mpf(1) / 2)
            j += 1
    return total / 2


def tails_t(df, d, t, lower_beta):
    with with_digits_for(d):
        if t == 0:
            return mp.erfc(d / mp.sqrt(2)) / 2, mp.erfc(-d / mp.sqrt(2)) / 2
        beyond = upper_t(df, d if t > 0 else -d, abs(t), lower_beta)
        return (1 - beyond, beyond) if t > 0 else (beyond, 1 - beyond)


def density_t(df, d, t):
    with with_digits_for(d):
        ratio = d * t * mp.sqrt(2 / (df + t * t))
        total, k, power = mpf(0), 0, mpf(1)
        gammas = [mp.gamma((df + 1) / 2), mp.gamma((df + 2) / 2)]
        smallest = mpf(10) ** -mp.dps
        while True:
            term = gammas[k % 2] * power
            total += term
            if abs(term) < smallest * abs(total) and k > abs(ratio):
                break
            gammas[k % 2] *= (df + k + 1) / 2
            power *= ratio / (k + 1)
            k += 1
        front = mp.exp(df / 2 * mp.log(df) - d * d / 2 - (df + 1) / 2 * mp.log(df + t * t))
        return front * total / (mp.sqrt(mp.pi) * mp.gamma(df / 2))
