#!/usr/bin/env python3
"""Writes accuracy/NAME.csv: values of every distribution from arbitrary-precision arithmetic (mpmath).

continuous.py and discrete.py state each distribution once more; the precision here leaves 50 digits of every tail.
Points are the doubles nearest to quantiles, in both tails down to 1e-300. Lines:

    =,NAME,PARAMETERS...                  what the following lines are about
    v,X,DENSITY,CUMULATIVE,UPPER,D,C,U    values at x, and their condition numbers in x
    q,P,QUANTILE,CONDITION                u: upper quantile
    m,MEAN,VARIANCE,SKEWNESS,KURTOSIS,ENTROPY,MEDIAN    by quadrature

The condition number says by how many units an error of one unit in the argument's last place moves the value. Nothing
stands where a value is no normal double. Usage: make_accuracy.py [NAME...] writes only these.
"""
import math
import pathlib
import struct
import sys

from mpmath import mp, mpf

from continuous import CONTINUOUS, INF
from discrete import DISCRETE

FOLDER = pathlib.Path(__file__).parent / "accuracy"
PROBABILITIES = [1e-300, 1e-100, 1e-20, 1e-6, 0.02, 0.3]


def to_order(x):
    """Doubles as whole numbers in the same order."""
    bits = struct.unpack("<q", struct.pack("<d", x))[0]
    return bits if bits >= 0 else -(bits & 0x7FFFFFFFFFFFFFFF)


def from_order(n):
    return math.copysign(struct.unpack("<d", struct.pack("<q", abs(n)))[0], n)


def quantile(of, p, upper):
    """Between two neighbouring doubles, by bisection and interpolation in turn, then by interpolation."""
    def beyond(x):
        """The logarithm of the probability beyond p; it rises with x."""
        value = of.upper(x) if upper else of.lower(x)
        sign = -1 if upper else 1
        return sign * (mp.log(value / p) if value > 0 else mpf(-10) ** 9)

    low, high = to_order(float(max(of.low, -1e308))), to_order(float(min(of.high, 1e308)))
    at_low, at_high, turn = beyond(from_order(low)), beyond(from_order(high)), 0
    while high - low > 1:
        middle, turn = (low + high) // 2, turn + 1
        if turn % 3 != 0 and -3000 < at_low < 0 < at_high < 3000:
            middle = low + int((high - low) * float(at_low / (at_low - at_high)))
            from_low, from_high = middle - low, high - middle
            # A little further from the nearer end, so that the other end comes near as well.
            middle += from_low // 256 + 1 if from_low < from_high else -(from_high // 256) - 1
            middle = min(max(middle, low + 1), high - 1)
        value = beyond(from_order(middle))
        if value < 0:
            low, at_low = middle, value
        else:
            high, at_high = middle, value
    left, right = mpf(from_order(low)), mpf(from_order(high))
    if at_low == at_high or abs(at_low) > 1e8 or abs(at_high) > 1e8:
        return right
    return left + (right - left) * at_low / (at_low - at_high)


def digits_for(of, smallest):
    """Near an end at 0 the distance from it may be the square of the probability."""
    return 50 + of.digits * max(0, int(-mp.log10(smallest)) + 1)


def number(value):
    value = float(value)
    return repr(value) if value == 0 or 2.3e-308 < abs(value) < INF else ""


def condition(value):
    return "%.2g" % min(float(value), 1e300)


def value_line(of, x):
    mp.dps = digits_for(of, mpf("1e-320"))
    density = of.density(x)
    lower, upper = of.lower(x), of.upper(x)
    fields = [number(density), number(lower), number(upper), condition(of.density_condition(x, density)),
              condition(abs(x * density / lower)), condition(abs(x * density / upper))]
    return ",".join(["v", repr(x), *fields])


def lines_of(of):
    for p in PROBABILITIES:
        for upper in False, True:
            mp.dps = digits_for(of, mpf(p))
            exact = quantile(of, mpf(p), upper)
            x = float(exact)
            inside = of.low < mpf(x) < of.high
            if x != 0 and not 1e-290 < abs(x) < 1e290:
                continue
            mp.dps = digits_for(of, mpf("1e-320"))
            slope = of.density(exact) * abs(exact) if inside and exact != 0 else 0
            yield ",".join(["u" if upper else "q", repr(p), repr(x), condition(p / slope if slope else 0)])
            if inside and x != 0:
                yield value_line(of, x)


def moments_line(of):
    """By quadrature of the density between quantiles beyond which nothing is left."""
    mp.dps = 40
    tails = [mpf(10) ** -k for k in (16, 8, 3)]
    middle = quantile(of, mpf(1) / 2, False)
    cuts = [quantile(of, p, False) for p in tails] + [middle] + [quantile(of, p, True) for p in reversed(tails)]
    nodes = {}

    def integral(function):
        def term(x):
            if x not in nodes:
                nodes[x] = of.density(x) if of.low < x < of.high else mpf(0)
            return function(x, nodes[x])
        return mp.quad(term, cuts)
    mean = integral(lambda x, f: x * f)
    central = [integral(lambda x, f, k=k: (x - mean) ** k * f) for k in (2, 3, 4)]
    entropy = integral(lambda x, f: -f * mp.log(f) if f > 0 else f)
    deviation = mp.sqrt(central[0])
    values = [mean, central[0], central[1] / deviation**3, central[2] / deviation**4, entropy, middle]
    return ",".join(["m", *(mp.nstr(v, 14) for v in values)])


DISCRETE_PROBABILITIES = [1e-300, 1e-50, 1e-9, 0.024, 0.51, 0.975, 1 - 1e-12]


def discrete_lines(of):
    seen = set()
    for p in DISCRETE_PROBABILITIES:
        for upper in False, True:
            mp.dps = 40 + int(-math.log10(p))
            k = of.quantile(p, upper)
            mp.dps = 360
            if k is None:
                k = of.most
            elif int(float(k)) == k:
                yield ",".join(["u" if upper else "q", repr(p), repr(float(k)), "0"])
            k = int(float(k))
            if k not in seen:
                seen.add(k)
                values = [number(value(k)) for value in (of.probability, of.lower, of.upper)]
                yield ",".join(["v", repr(float(k)), *values, "0", "0", "0"])


def discrete_moments_line(of):
    """By the sum of the terms that are left at the precision."""
    mp.dps = 30
    terms = [(mpf(k), of.probability(k)) for k in range(of.low, of.quantile(1e-29, True) + 1)]
    mean = sum(k * f for k, f in terms)
    central = [sum((k - mean) ** power * f for k, f in terms) for power in (2, 3, 4)]
    entropy = -sum(f * mp.log(f) for _, f in terms if f > 0)
    deviation = mp.sqrt(central[0])
    values = [mean, central[0], central[1] / deviation**3, central[2] / deviation**4, entropy, of.quantile(0.5, False)]
    return ",".join(["m", *(mp.nstr(mpf(v), 14) for v in values)])


NO_MOMENTS = {"Cauchy", "half-Cauchy", "Levy", "Student", "triangular"}


def record(name, of_parameters, parameter_sets, lines_of, moments_of):
    lines = []
    for i, parameters in enumerate(parameter_sets):
        mp.dps = 700
        of = of_parameters(*parameters)
        lines.append(",".join(["=", name, *map(repr, parameters)]))
        if i == 0 and name not in NO_MOMENTS:
            lines.append(moments_of(of))
        lines += lines_of(of)
    (FOLDER / f"{name.replace(' ', '_')}.csv").write_text("\n".join(lines) + "\n", encoding="utf-8")


def main(names):
    kinds = [(CONTINUOUS, lines_of, moments_line), (DISCRETE, discrete_lines, discrete_moments_line)]
    for references, *writers in kinds:
        for name, (of_parameters, parameter_sets) in references.items():
            if not names or name in names:
                record(name, of_parameters, parameter_sets, *writers)


if __name__ == "__main__":
    main(sys.argv[1:])
