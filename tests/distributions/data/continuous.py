"""The continuous distributions once more, for make_accuracy.py: each as its cumulative probability from the textbook,
its density the numerical derivative unless one is given, the upper tail the complement unless one is given."""
from mpmath import mp, mpf

from noncentral import Tails, beta_mixture, beta_mixture_density, density_t, gamma_mixture, tails_t

INF = float("inf")


def bounded(x, bound=10**7):
    """What is beyond has vanished, or become 1, to every digit that is asked for."""
    return min(max(x, -mpf(bound)), mpf(bound))


def exp(x):
    return mp.exp(bounded(x))


def expm1(x):
    return mp.expm1(bounded(x))


def erfc(x):
    return mp.erfc(bounded(x, 5000))


def derivative(function, x, order=1):
    """With a step in proportion to x."""
    if x == 0:
        return mp.diff(function, x, order)
    return mp.diff(lambda share: function(share * x), mpf(1), order) / x**order


class Reference:
    """A distribution with its parameters: cumulative probability, support, and density if it is given."""

    def __init__(self, cumulative, low=-INF, high=INF, density=None, upper=None, digits=2):
        self.digits = digits  # of how many powers of a probability the complement must be told from 1
        self.cumulative, self.low, self.high, self.given, self.given_upper = cumulative, low, high, density, upper

    def lower(self, x):
        return mpf(0) if x <= self.low else mpf(1) if x >= self.high else self.cumulative(mpf(x))

    def upper(self, x):
        if self.given_upper and self.low < x < self.high:
            return self.given_upper(mpf(x))
        return 1 - self.lower(x)

    def density(self, x):
        return self.given(mpf(x)) if self.given else derivative(self.cumulative, mpf(x))

    def density_condition(self, x, density):
        if self.given:
            return abs(x * derivative(self.given, mpf(x)) / density)
        return abs(x * derivative(self.cumulative, mpf(x), 2) / density)


def exponential_of(hazard, low=-INF, high=INF):
    """By its cumulative hazard."""
    return Reference(lambda x: -expm1(-hazard(x)), low, high)


def power(x, y):
    return exp(y * mp.log(x))


def series(ratio):
    """1 + ratio(0) + ratio(0) ratio(1) + ..., all positive."""
    total = term = mpf(1)
    smallest, k = mpf(10) ** -mp.dps, 0
    while term > total * smallest:
        term *= ratio(k)
        total += term
        k += 1
    return total


def lower_gamma(a, x):
    if x > 20 * (a + mp.dps):
        return mpf(1)
    return exp(a * mp.log(x) - x - mp.loggamma(a + 1)) * series(lambda k: x / (a + 1 + k))


def gamma_of(shape, value, slope, low=-INF, high=INF, rises=True):
    """Of a variable whose `value` is a gamma variable; `slope` is the derivative of `value` without its sign."""
    a = mpf(shape)

    def density(x):
        v = value(x)
        return exp((a - 1) * mp.log(v) - v - mp.loggamma(a)) * slope(x)
    lower = lambda x: lower_gamma(a, value(x))
    return Reference(lower if rises else lambda x: 1 - lower(x), low, high, density, None if rises else lower, 1)


def gamma_power(shape, exponent, scale, location=0.0):
    """location + scale V^exponent, V a gamma variable."""
    z, inverse = z_of(location, scale), 1 / mpf(exponent)
    return gamma_of(shape, lambda x: power(z(x), inverse), lambda x: abs(inverse) / scale * power(z(x), inverse - 1),
                    location, INF, exponent > 0)


def error(location, scale, shape):
    z, b = z_of(location, scale), mpf(shape)

    def cumulative(x):
        inner = lower_gamma(1 / b, abs(z(x)) ** b) if z(x) != 0 else 0
        return (1 + inner if z(x) > 0 else 1 - inner) / 2
    return Reference(cumulative, density=lambda x: exp(-abs(z(x)) ** b) / (2 * scale * mp.gamma(1 + 1 / b)), digits=1)


def log_beta(a, b):
    return mp.loggamma(a) + mp.loggamma(b) - mp.loggamma(a + b)


def lower_beta(a, b, x, y):
    """I_x(a, b) with y = 1 - x, on the side where the terms of the series fall soonest."""
    if x * (a + b + 2) > a + 1:
        a, b, x, y, mirrored = b, a, y, x, True
    else:
        mirrored = False
    front = exp(a * mp.log(x) + b * mp.log(y) - log_beta(a, b)) / a
    value = front * series(lambda k: x * (a + b + k) / (a + 1 + k))
    return 1 - value if mirrored else value


def beta_of(a, b, odds, slope, low, high=INF):
    """Of a variable whose `odds` x / (1 - x) are those of a beta variable x; `slope` is their derivative."""
    a, b = mpf(a), mpf(b)
    parts = lambda x: (odds(x) / (1 + odds(x)), 1 / (1 + odds(x)))

    def density(x):
        u, w = parts(x)
        return exp((a - 1) * mp.log(u) + (b + 1) * mp.log(w) - log_beta(a, b)) * slope(x)
    return Reference(lambda x: lower_beta(a, b, *parts(x)), low, high, density,
                     lambda x: lower_beta(b, a, *reversed(parts(x))), 1)


def beta(a, b, lower=0.0, upper=1.0):
    low, high = mpf(lower), mpf(upper)
    return beta_of(a, b, lambda x: (x - low) / (high - x), lambda x: (high - low) / (high - x) ** 2, lower, upper)


def pert(lower, mode, upper, weight):
    width = mpf(upper) - lower
    return beta(1 + weight * (mpf(mode) - lower) / width, 1 + weight * (mpf(upper) - mode) / width, lower, upper)


def student(df):
    v = mpf(df)

    def upper(x):
        if x < 0:
            return 1 - upper(-x)
        return mpf(1) / 2 if x == 0 else lower_beta(v / 2, mpf(1) / 2, v / (v + x * x), x * x / (v + x * x)) / 2
    front = lambda: exp(-log_beta(v / 2, mpf(1) / 2)) / mp.sqrt(v)
    return Reference(lambda x: upper(-x), density=lambda x: front() * power(1 + x * x / v, -(v + 1) / 2), upper=upper,
                     digits=1)


def studentized_range_of_two(means, df):
    """Student's |t| times the root of 2; studentized_range.csv has other numbers of means."""
    assert means == 2
    of = normal_of(lambda x: x) if df >= 1e17 else student(df)
    t = lambda x: x / mp.sqrt(2)
    given = of.given or (lambda x: mp.exp(-x * x / 2) / mp.sqrt(2 * mp.pi))
    return Reference(lambda x: 1 - 2 * of.given_upper(t(x)), 0.0, INF, lambda x: mp.sqrt(2) * given(t(x)),
                     lambda x: 2 * of.given_upper(t(x)), 1)


def f(df1, df2):
    m, n = mpf(df1), mpf(df2)
    return beta_of(m / 2, n / 2, lambda x: m * x / n, lambda x: m / n, 0.0)


def gev(location, scale, shape):
    z = lambda x: (x - mpf(location)) / scale
    if shape == 0:
        return Reference(lambda x: exp(-exp(-z(x))))
    end = mpf(location) - mpf(scale) / shape
    return Reference(lambda x: exp(-power(1 + shape * z(x), -1 / mpf(shape))),
                     *((end, INF) if shape > 0 else (-INF, end)))


def gpd(location, scale, shape):
    z = lambda x: (x - mpf(location)) / scale
    if shape == 0:
        return exponential_of(z, location)
    end = INF if shape > 0 else mpf(location) - mpf(scale) / shape
    return Reference(lambda x: 1 - power(1 + shape * z(x), -1 / mpf(shape)), location, end)


def normal_of(score, low=-INF, high=INF):
    """Of a value whose score is standard normal."""
    return Reference(lambda x: erfc(-score(x) / mp.sqrt(2)) / 2, low, high,
                     upper=lambda x: erfc(score(x) / mp.sqrt(2)) / 2, digits=1)


def weibull(shape, scale, location=0.0):
    return exponential_of(lambda x: power((x - mpf(location)) / scale, mpf(shape)), location)


def frechet(shape, scale, location=0.0):
    return Reference(lambda x: exp(-power((x - mpf(location)) / scale, -mpf(shape))), location)


def logistic(location, scale, shape=1.0):
    return Reference(lambda x: power(1 + exp(-(x - mpf(location)) / scale), -mpf(shape)))


def laplace_of(score, low=-INF):
    def cumulative(x):
        z = score(x)
        return exp(z) / 2 if z < 0 else 1 - exp(-z) / 2
    return Reference(cumulative, low)


def triangular(lower, mode, upper):
    a, c, b = mpf(lower), mpf(mode), mpf(upper)
    cumulative = lambda x: (x - a) ** 2 / ((b - a) * (c - a)) if x < c else 1 - (b - x) ** 2 / ((b - a) * (b - c))
    density = lambda x: 2 * (x - a) / ((b - a) * (c - a)) if x < c else 2 * (b - x) / ((b - a) * (b - c))
    return Reference(cumulative, lower, upper, density)


def johnson_sb(gamma, delta, location, scale):
    low, high = mpf(location), mpf(location + scale)
    return normal_of(lambda x: gamma + delta * mp.log((x - low) / (high - x)), low, high)


def truncated_normal(mean, deviation, lower, upper):
    z = lambda x: (x - mpf(mean)) / (deviation * mp.sqrt(2))

    def between(low, high):
        if low > mean:
            return (erfc(z(low)) - erfc(z(high))) / 2
        return (erfc(-z(high)) - erfc(-z(low))) / 2
    whole = lambda: between(mpf(lower), mpf(upper))
    return Reference(lambda x: between(mpf(lower), x) / whole(), lower, upper,
                     lambda x: mp.exp(-z(x) ** 2) / (deviation * mp.sqrt(2 * mp.pi) * whole()),
                     lambda x: between(x, mpf(upper)) / whole(), 1)


def inverse_gaussian(mean, shape):
    m, s = mpf(mean), mpf(shape)
    part = lambda z: erfc(z / mp.sqrt(2)) / 2
    root = lambda x: mp.sqrt(s / x)
    reflected = lambda x: exp(2 * s / m) * part(root(x) * (x / m + 1))
    return Reference(lambda x: part(root(x) * (1 - x / m)) + reflected(x), 0.0, INF,
                     lambda x: mp.sqrt(s / (2 * mp.pi * x**3)) * exp(-s * (x - m) ** 2 / (2 * m * m * x)),
                     lambda x: part(root(x) * (x / m - 1)) - reflected(x), 0)


def hyperexponential(p, rate1, rate2):
    mix = lambda of_rate: p * of_rate(mpf(rate1)) + (1 - mpf(p)) * of_rate(mpf(rate2))
    return Reference(lambda x: mix(lambda r: -expm1(-r * x)), 0.0, INF, lambda x: mix(lambda r: r * exp(-r * x)),
                     lambda x: mix(lambda r: exp(-r * x)), 0)


def moved(of, location, scale):
    z = z_of(location, scale)
    return Reference(lambda x: of.cumulative(z(x)), density=lambda x: of.given(z(x)) / scale,
                     upper=lambda x: of.given_upper(z(x)), digits=of.digits)


def noncentral_chi_square(df, noncentrality):
    a, l = mpf(df) / 2, mpf(noncentrality)
    tails = Tails(lambda x: gamma_mixture(a, l / 2, x / 2))
    return Reference(tails.lower, 0.0, INF, lambda x: (x / l) ** ((a - 1) / 2) * mp.exp(-(x + l) / 2)
                     * mp.besseli(a - 1, mp.sqrt(l * x)) / 2, tails.upper, 0)


def rice(distance, scale):
    d, s = mpf(distance), mpf(scale)
    tails = Tails(lambda x: gamma_mixture(mpf(1), (d / s) ** 2 / 2, (x / s) ** 2 / 2))
    return Reference(tails.lower, 0.0, INF, lambda x: x / s**2 * mp.exp(-(x * x + d * d) / (2 * s * s))
                     * mp.besseli(0, x * d / s**2), tails.upper, 0)


def noncentral_beta_of(a, b, noncentrality, odds, slope, high):
    """Of a variable whose odds are those of a noncentral beta variable."""
    a, b, mean = mpf(a), mpf(b), mpf(noncentrality) / 2
    parts = lambda x: (odds(x) / (1 + odds(x)), 1 / (1 + odds(x)))
    tails = Tails(lambda x: beta_mixture(a, b, mean, *parts(x), lower_beta))
    return Reference(tails.lower, 0.0, high, lambda x: beta_mixture_density(a, b, mean, *parts(x), series)
                     * slope(x), tails.upper, 0)


def noncentral_t(df, noncentrality):
    n, d = mpf(df), mpf(noncentrality)
    return Reference(lambda x: tails_t(n, d, x, lower_beta)[0], density=lambda x: density_t(n, d, x),
                     upper=lambda x: tails_t(n, d, x, lower_beta)[1], digits=0)


def owen_t(h, a):
    """Owen's series for h >= 0 and 0 <= a <= 1."""
    x = h * h / 2
    total, power, left, part = mp.atan(a), a, mpf(1), mp.exp(-x)
    j, smallest = 0, mpf(10) ** -mp.dps
    while power > smallest:
        left -= part
        total -= (-1) ** j * left * power / (2 * j + 1)
        j += 1
        part *= x / j
        power *= a * a
    return total / (2 * mp.pi)


def skew_normal(location, scale, shape):
    a, z = mpf(shape), z_of(location, scale)
    below = lambda t: erfc(-t / mp.sqrt(2)) / 2

    def standard(t):
        h, b = abs(t), abs(a)
        if b <= 1:
            owen = owen_t(h, b)
        else:
            owen = (below(h) + below(h * b)) / 2 - below(h) * below(h * b) - owen_t(h * b, 1 / b)
        return below(t) - 2 * mp.sign(a) * owen
    return Reference(lambda x: standard(z(x)),
                     density=lambda x: mp.sqrt(2 / mp.pi) * mp.exp(-z(x) ** 2 / 2) * below(a * z(x)) / scale, digits=1)


def von_mises(location, concentration):
    """By the Fourier series of the density."""
    centre, k = mpf(location), mpf(concentration)
    ratios = {}

    def ratios_of_bessel():
        """I_j / I_0 from j = 1 on, by Miller's recurrence from where they have vanished."""
        if mp.prec not in ratios:
            count = int(3 * mp.sqrt(mp.dps * k) + mp.dps) + 40
            found, ratio = [], mpf(0)
            for j in range(count, 0, -1):
                ratio = 1 / (2 * j / k + ratio) if k else mpf(0)
                found.append(ratio)
            product = mpf(1)
            values = []
            for r in reversed(found):
                product *= r
                values.append(product)
            ratios[mp.prec] = values
        return ratios[mp.prec]

    def beyond(angle):
        """What is between the angle and pi."""
        cosine, last, sine, total = 2 * mp.cos(angle), mpf(0), mp.sin(angle), mpf(0)
        for j, ratio in enumerate(ratios_of_bessel(), 1):
            total += ratio * sine / j
            last, sine = sine, cosine * sine - last
        return (mp.pi - angle - 2 * total) / (2 * mp.pi)
    return Reference(lambda x: beyond(centre - x), centre - mp.pi, centre + mp.pi,
                     lambda x: mp.exp(k * mp.cos(x - centre)) / (2 * mp.pi * mp.besseli(0, k)),
                     lambda x: beyond(x - centre), 1)


def kolmogorov(scale):
    z = z_of(0.0, scale)
    ks = range(1, 40)

    def lower(x):
        v = z(x)
        return mp.sqrt(2 * mp.pi) / v * mp.fsum(exp(-((2 * k - 1) * mp.pi / v) ** 2 / 8) for k in ks)

    def upper(x):
        v = z(x)
        return 2 * mp.fsum((-1) ** (k - 1) * exp(-2 * (k * v) ** 2) for k in ks)

    def density(x):
        v = z(x)
        if v > 1:
            return 8 * v * mp.fsum((-1) ** (k - 1) * k * k * exp(-2 * (k * v) ** 2) for k in ks) / scale
        squares = [((2 * k - 1) * mp.pi / v) ** 2 / 4 for k in ks]
        return mp.sqrt(2 * mp.pi) / (v * v) * mp.fsum((s - 1) * exp(-s / 2) for s in squares) / scale
    return Reference(lambda x: lower(x) if z(x) < 1 else 1 - upper(x), 0.0, INF, density,
                     lambda x: 1 - lower(x) if z(x) < 1 else upper(x), 0)


def z_of(location, scale):
    return lambda x: (x - mpf(location)) / scale


# Of each: the reference, and parameters; the first are those whose moments are recorded.
CONTINUOUS = {
    "arcsine": (lambda a, b: Reference(lambda x: 2 / mp.pi * mp.asin(mp.sqrt((x - mpf(a)) / (mpf(b) - a))), a, b,
                                       lambda x: 1 / (mp.pi * mp.sqrt((x - a) * (b - x)))),
                [(0.0, 1.0), (-3.0, 0.0), (1e5, 1e5 + 2)]),
    "beta": (beta, [(2.0, 3.0), (0.3, 0.2), (300.0, 0.9), (1e-3, 40.0)]),
    "Birnbaum-Saunders": (lambda a, b: normal_of(lambda x: (mp.sqrt(x / b) - mp.sqrt(b / x)) / mpf(a), 0.0),
                          [(0.5, 2.0), (1e-3, 1.0), (20.0, 0.7)]),
    "Burr III": (lambda c, k, s: Reference(lambda x: power(1 + power(x / mpf(s), -mpf(c)), -mpf(k)), 0.0),
                 [(30.0, 0.8, 2.0), (0.7, 2.5, 1.0), (2.0, 0.01, 1e6), (50.0, 40.0, 1e-3)]),
    "Burr XII": (lambda c, k, s: Reference(lambda x: 1 - power(1 + power(x / mpf(s), mpf(c)), -mpf(k)), 0.0),
                 [(4.0, 12.0, 2.0), (0.7, 2.5, 1.0), (2.0, 0.01, 1e6), (50.0, 40.0, 1e-3)]),
    "Cauchy": (lambda m, s: Reference(lambda x: mp.atan2(s, -(x - mpf(m))) / mp.pi),
               [(0.0, 1.0), (-7.3, 1e-3), (1e10, 2.5)]),
    "chi": (lambda n: gamma_power(mpf(n) / 2, 0.5, mp.sqrt(2)), [(3.0,), (0.7,), (200.0,)]),
    "chi-square": (lambda n: gamma_power(mpf(n) / 2, 1, 2), [(3.0,), (0.7,), (200.0,)]),
    "Erlang": (lambda k, r: gamma_power(k, 1, 1 / mpf(r)), [(3.0, 2.0), (1.0, 1e5), (150.0, 0.01)]),
    "error": (error, [(0.0, 1.0, 1.5), (-7.0, 0.01, 0.3), (1e3, 2.0, 20.0)]),
    "exponential": (lambda r: exponential_of(lambda x: r * x, 0.0), [(1.0,), (1e-5,), (737.3,)]),
    "extreme value of minima": (lambda m, s: exponential_of(lambda x: exp((x - mpf(m)) / s)),
                                [(0.0, 1.0), (-3.7, 0.01), (1e6, 7.7)]),
    "F": (f, [(5.0, 40.0), (1.0, 1.0), (0.3, 40.0), (300.0, 7.5)]),
    "four-parameter beta": (beta, [(2.0, 3.0, -1.0, 4.0), (0.5, 0.2, -3.0, 0.0), (20.0, 0.9, 1e5, 1e5 + 2)]),
    "Frechet": (frechet, [(30.0, 2.0, 1.0), (0.5, 1.0, 0.0), (3.3, 1e-3, -10.0), (400.0, 2.0, 0.0)]),
    "gamma": (lambda a, s: gamma_power(a, 1, s), [(2.5, 3.0), (0.02, 1.0), (300.0, 1e-5)]),
    "generalised extreme value": (gev, [(1.0, 2.0, -0.2), (0.0, 1.0, 0.5), (0.0, 1.0, 1e-7), (10.0, 0.3, 0.0),
                                        (0.0, 1.0, -2.0)]),
    "generalised gamma": (lambda a, p, s: gamma_power(a, 1 / mpf(p), s),
                          [(2.5, 1.5, 3.0), (0.2, 4.0, 1.0), (100.0, 0.5, 1e-5)]),
    "generalised logistic": (logistic, [(1.0, 2.0, 3.0), (0.0, 1.0, 0.01), (-5.0, 0.1, 1e4)]),
    "generalised Pareto": (gpd, [(1.0, 2.0, -0.3), (0.0, 1.0, 0.5), (0.0, 1.0, 1e-7), (10.0, 0.3, 0.0),
                                 (0.0, 1.0, -2.0)]),
    "Gompertz": (lambda k, r: exponential_of(lambda x: k * expm1(r * x), 0.0),
                 [(0.2, 1.5), (1e-8, 0.1), (50.0, 1.0)]),
    "Gumbel": (lambda m, s: Reference(lambda x: exp(-exp(-(x - mpf(m)) / s))),
               [(0.0, 1.0), (-3.7, 0.01), (1e6, 7.7)]),
    "half-Cauchy": (lambda s: Reference(lambda x: 2 / mp.pi * mp.atan(x / s), 0.0), [(1.0,), (1e-9,), (2.7e8,)]),
    "half-normal": (lambda s: Reference(lambda x: mp.erf(x / s / mp.sqrt(2)), 0.0), [(1.0,), (1e-9,), (2.7e8,)]),
    "hyperbolic secant": (lambda m, s: Reference(lambda x: 2 / mp.pi * mp.atan(exp(mp.pi / 2 * (x - mpf(m)) / s))),
                          [(0.0, 1.0), (-3.7, 0.01), (1e6, 7.7)]),
    "hyperexponential": (hyperexponential, [(0.3, 1.0, 5.0), (1e-6, 1e-3, 100.0), (0.5, 2.0, 2.0)]),
    "inverse chi-square": (lambda n: gamma_power(mpf(n) / 2, -1, mpf(1) / 2), [(80.0,), (0.7,), (200.0,)]),
    "inverse gamma": (lambda a, s: gamma_power(a, -1, s), [(40.0, 3.0), (0.2, 1.0), (300.0, 1e-5)]),
    "inverse Gaussian": (inverse_gaussian, [(2.0, 3.0), (1.0, 1e4), (5.0, 1e-6), (1e-5, 40.0)]),
    "inverse Weibull": (frechet, [(40.0, 2.0), (0.5, 1.0), (3.3, 1e-3)]),
    "Johnson SB": (johnson_sb, [(0.3, 1.5, 1.0, 2.0), (1.0, 0.2, 0.0, 1e-3), (-20.0, 30.0, -5.0, 5.0)]),
    "Johnson SL": (lambda g, d, m, s: normal_of(lambda x: g + d * mp.log((x - mpf(m)) / s), m),
                   [(0.3, 5.0, 1.0, 2.0), (0.0, 0.5, 0.0, 1.0), (-20.0, 30.0, -5.0, 0.1)]),
    "Johnson SU": (lambda g, d, m, s: normal_of(lambda x: g + d * mp.asinh((x - mpf(m)) / s)),
                   [(0.3, 5.0, 1.0, 2.0), (0.0, 0.5, 0.0, 1.0), (-20.0, 30.0, -5.0, 0.1)]),
    "Kolmogorov": (kolmogorov, [(1.0,), (1e-9,), (2.7e8,)]),
    "Kumaraswamy": (lambda a, b: Reference(lambda x: 1 - power(1 - power(x, mpf(a)), mpf(b)), 0.0, 1.0),
                    [(2.0, 5.0), (0.3, 0.2), (1.0, 100.0), (1e4, 3.3)]),
    "Laplace": (lambda m, s: laplace_of(z_of(m, s)), [(0.0, 1.0), (-3.7, 0.01), (1e6, 7.7)]),
    "Levy": (lambda m, s: Reference(lambda x: erfc(mp.sqrt(s / (2 * (x - mpf(m))))), m),
             [(0.0, 1.0), (-3.7, 0.01), (1e6, 7.7)]),
    "location-scale Student": (lambda n, m, s: moved(student(n), m, s),
                               [(11.0, 1.0, 2.0), (1.0, -3.7, 0.01), (300.0, 1e6, 7.7)]),
    "log-gamma": (lambda a, s, m: gamma_of(a, lambda x: exp((x - mpf(m)) / s), lambda x: exp((x - mpf(m)) / s) / s),
                  [(2.5, 3.0, 1.0), (0.2, 1.0, 0.0), (300.0, 0.1, -50.0)]),
    "log-Laplace": (lambda a, s: laplace_of(lambda x: a * mp.log(x / s), 0.0), [(40.0, 2.0), (0.7, 1.0), (3.0, 1e-5)]),
    "log-logistic": (lambda a, s: Reference(lambda x: 1 / (1 + power(x / s, -mpf(a))), 0.0),
                     [(40.0, 2.0), (0.7, 1.0), (3.0, 1e-5)]),
    "log-Pearson III": (lambda a, s, m: gamma_of(a, lambda x: (mp.log(x) - m) / s, lambda x: 1 / (abs(s) * x),
                                                 exp(mpf(m)) if s > 0 else 0, INF if s > 0 else exp(mpf(m)), s > 0),
                        [(2.5, 0.02, 1.0), (3.0, -0.2, 2.0), (50.0, 0.3, -5.0)]),
    "logistic": (logistic, [(0.0, 1.0), (-3.7, 0.01), (1e6, 7.7)]),
    "lognormal": (lambda m, s: normal_of(lambda x: (mp.log(x) - m) / s, 0.0), [(0.5, 0.3), (0.0, 5.0), (-100.0, 0.01)]),
    "Lomax": (lambda a, s: Reference(lambda x: 1 - power(1 + x / s, -mpf(a)), 0.0), [(40.0, 2.0), (0.7, 1.0), (1e5, 1e-5)]),
    "Maxwell": (lambda s: gamma_power(mpf(3) / 2, 0.5, s * mp.sqrt(2)), [(1.0,), (1e-9,), (2.7e8,)]),
    "Nakagami": (lambda m, w: gamma_power(m, 0.5, mp.sqrt(mpf(w) / m)), [(2.5, 3.0), (0.5, 1.0), (300.0, 1e-5)]),
    "noncentral beta": (lambda a, b, l: noncentral_beta_of(a, b, l, lambda x: x / (1 - x), lambda x: 1 / (x * (1 - x)), 1.0),
                        [(2.0, 3.0, 4.0), (0.3, 0.2, 1.0), (300.0, 0.9, 50.0), (0.5, 40.0, 400.0)]),
    "noncentral chi-square": (noncentral_chi_square, [(3.0, 5.0), (0.7, 100.0), (200.0, 1e3), (2.0, 1e-3)]),
    "noncentral F": (lambda m, n, l: noncentral_beta_of(mpf(m) / 2, mpf(n) / 2, l, lambda x: m * x / mpf(n), lambda x: 1 / x,
                                                             INF),
                     [(5.0, 40.0, 3.0), (1.0, 1.0, 10.0), (0.3, 40.0, 100.0), (300.0, 7.5, 400.0)]),
    "noncentral t": (noncentral_t, [(40.0, 1.5), (1.0, -3.0), (0.3, 6.0), (200.0, 8.0)]),
    "normal": (lambda m, s: normal_of(z_of(m, s)), [(0.0, 1.0), (-3.7, 0.01), (1e6, 7.7)]),
    "Pareto": (lambda a, s: Reference(lambda x: 1 - power(x / s, -mpf(a)), s), [(40.0, 2.0), (0.7, 1.0), (1e5, 1e-5)]),
    "Pearson III": (lambda a, s, m: gamma_power(a, 1, s, m), [(2.5, 3.0, 1.0), (0.2, 1.0, 0.0), (300.0, 1e-2, -50.0)]),
    "Pearson V": (lambda a, s, m: gamma_power(a, -1, s, m), [(40.0, 3.0, 1.0), (0.2, 1.0, 0.0), (300.0, 1e-2, -50.0)]),
    "Pearson VI": (lambda a, b, s: beta_of(a, b, lambda x: x / s, lambda x: 1 / mpf(s), 0.0),
                   [(2.5, 30.0, 3.0), (0.3, 0.2, 1.0), (300.0, 7.5, 1e-5)]),
    "PERT": (pert, [(1.0, 2.0, 5.0, 4.0), (-3.0, 0.0, 0.0, 1.0), (10.0, 10.5, 11.0, 400.0)]),
    "power function": (lambda a, s: Reference(lambda x: power(x / s, mpf(a)), 0.0, s,
                                              lambda x: a / mpf(s) * power(x / s, mpf(a) - 1)),
                       [(3.0, 2.0), (0.7, 1.0), (1e5, 1e-5)]),
    "Rayleigh": (lambda s: exponential_of(lambda x: (x / s) ** 2 / 2, 0.0), [(1.0,), (1e-9,), (2.7e8,)]),
    "reciprocal": (lambda a, b: Reference(lambda x: mp.log(x / a) / mp.log(b / mpf(a)), a, b,
                                          lambda x: 1 / (x * mp.log(b / mpf(a)))),
                   [(1.0, 10.0), (1e-200, 1e200), (1.0, 1.0001)]),
    "Rice": (rice, [(2.0, 1.5), (0.0, 1.0), (30.0, 1.0), (1.0, 100.0)]),
    "skew normal": (skew_normal, [(1.0, 2.0, 3.0), (0.0, 1.0, -0.5), (-3.7, 0.01, 50.0)]),
    "Student": (student, [(11.0,), (1.0,), (0.3,), (300.0,)]),
    "studentized range": (studentized_range_of_two, [(2.0, 40.0), (2.0, 1.0), (2.0, 1e17), (2.0, 300.0)]),
    "three-parameter lognormal": (lambda m, s, t: normal_of(lambda x: (mp.log(x - mpf(t)) - m) / s, t),
                                  [(0.5, 0.3, 1.0), (0.0, 5.0, -2.0), (-10.0, 0.01, 1e-5)]),
    "three-parameter Weibull": (weibull, [(2.5, 2.0, 1.0), (0.5, 1.0, 0.0), (33.3, 1e-3, -10.0)]),
    "triangular": (triangular, [(0.0, 0.3, 1.0), (-5.0, -5.0, 2.0), (-3.0, 0.0, 0.0), (1e6, 1e6 + 1, 1e6 + 5)]),
    "truncated normal": (truncated_normal, [(0.5, 2.0, -1.0, 3.0), (0.0, 1.0, -1e300, 1e300), (0.0, 1.0, 1000.0, 1e300),
                                            (3.0, 0.5, -1.0, 0.0), (0.0, 1.0, 5.0, 5.001)]),
    "uniform": (lambda a, b: Reference(lambda x: (x - mpf(a)) / (mpf(b) - a), a, b, lambda x: 1 / (mpf(b) - a)),
                [(0.0, 1.0), (-3.0, 0.0), (1e5, 1e5 + 2)]),
    "von Mises": (von_mises, [(0.0, 1.0), (1.5, 700.0), (-3.0, 0.0), (100.0, 30.0)]),
    "Wald": (lambda s: inverse_gaussian(1.0, s), [(2.5,), (0.01,), (500.0,)]),
    "Weibull": (weibull, [(1.5, 2.0), (0.1, 1.0), (400.0, 1e-3)]),
    "Wigner semicircle": (lambda r: beta(mpf(3) / 2, mpf(3) / 2, -r, r), [(1.0,), (1e-9,), (2.7e8,)]),
}
