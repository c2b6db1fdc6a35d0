#!/usr/bin/env python3
"""Writes studentized_range.csv: the studentized range in arbitrary precision (mpmath).

Columns: means, df, q, the probability of q or less, that of more, and the density, each to 20
digits. The upper tail is the complement of the lower one, which 42 digits allow down to 1e-15: no
formula is shared with the library, which integrates it by itself. The position of the range is
that of its lower end here, the logarithm of the estimate is the plain variable, and everything is
computed on two grids that must agree. The nodes of a grid are logarithms of ranges, so that rows
share them.

Needs Debian's python3-mpmath and ten minutes. Made with:
./make_studentized_range.py > studentized_range.csv
"""
import functools
import itertools
import math
from mpmath import mp, mpf

mp.dps = 42
NEGLIGIBLE = mpf(10) ** -40
AGREEMENT = mpf(10) ** -17
MEANS = [2, 3, 4, 7, 20, 50, 120, 200]
DFS = ["0.5", "1", "1.7", "3", "8.5", "20", "60", "240", "1e4", "1e6", "inf"]
# The probability that a row is near: of the lower tail where negative.
TARGETS = [-1e-14, 1e-14, 0.05, -1e-9, 1e-4, -1e-3, 1e-8, 0.4, -0.1, 1e-11]
PER_PAIR = 3
# Farther out, where there is no outer integral.
FAR_DFS = ["inf"]
FAR_TARGETS = [-1e-15, 1e-15]


class Grid:
    """Fineness of the inner integral, and where the outer one has its nodes, in steps."""

    def __init__(self, fineness, shift):
        self.fineness, self.shift = fineness, shift


def outwards(term, step, start):
    """The sums, component by component, of term(i) * step, for whole i from start outwards."""
    total = list(term(start))
    for direction in (1, -1):
        before = [mpf(0)] * len(total)
        for i in itertools.count(1):
            values = term(start + direction * i)
            total = [a + b for a, b in zip(total, values)]
            if all(v <= b and v <= NEGLIGIBLE * t for v, b, t in zip(values, before, total)):
                break
            before = values
    return [step * value for value in total]


def below(x):
    return mp.erfc(-x / mp.sqrt(2)) / 2


@functools.lru_cache(None)
def of_range(w, means, fineness):
    """The cumulative probability and the density of the range of normal values."""
    if w > 20:
        return mpf(1), mpf(0)
    middle = math.erf(float(w) / math.sqrt(8))
    slope = float(w) * math.exp(-float(w) ** 2 / 8) / math.sqrt(2 * math.pi)
    curvature = 1 + (means - 1) * (slope / middle if middle > 0 else 1)
    step = mpf(min(0.45 / math.sqrt(curvature), 0.42 / (1.15 + 1.15 * math.log(means))) / fineness)

    def term(i):
        z = i * step - w / 2
        between = below(z + w) - below(z) if z + w < 0 else below(-z) - below(-z - w)
        power = between ** (means - 2)
        end = mp.npdf(z)
        return end * power * between, end * power * mp.npdf(z + w)

    lower, density = outwards(term, step, 0)
    return means * lower, means * (means - 1) * density


def studentized(q, means, df, grid):
    if mp.isinf(df):
        return of_range(q, means, grid.fineness)
    power = float(df) + means - 1 + 2 * math.log(means) ** 2
    step = mpf(2) ** math.floor(-math.log2(290 + 9.6 * power) / 2)
    scale = 2 * mp.exp(df / 2 * mp.log(df / 2) - df / 2 - mp.loggamma(df / 2))

    def term(i):
        w = mp.exp((i + grid.shift) * step)
        s = w / q
        weight = scale * mp.exp(df * (mp.log(s) - (s * s - 1) / 2))
        if weight < mpf(10) ** -90:
            return mpf(0), mpf(0)
        lower, density = of_range(w, means, grid.fineness)
        return weight * lower, weight * s * density

    return outwards(term, step, int(mp.nint(mp.log(q) / step)))


def rough_tails(q, means, df):
    """Both tails with an error that does not matter: for choosing q."""
    def parts(w):
        pairs = means * (means - 1) / 2
        apart = math.erfc(w / 2)
        upper = 1.0 if apart == 1 else -math.expm1(pairs * math.log1p(-apart))
        return math.erf(w / math.sqrt(8)) ** (means - 1), upper
    if math.isinf(df):
        return parts(q)
    step = 0.1 / math.sqrt(1 + df / 10)
    lower = upper = total = 0
    for i in range(-int(min(80 / df + 8, 12 / math.sqrt(df) + 60 / df) / step), int(4 / step)):
        t = i * step
        weight = math.exp(max(-700, df * (t - (math.exp(2 * t) - 1) / 2)))
        a, b = parts(q * math.exp(t))
        lower, upper, total = lower + weight * a, upper + weight * b, total + weight
    return lower / total, upper / total


def q_near(target, means, df):
    low, high = -36.0, 80.0
    while high - low > 1e-3:
        middle = (low + high) / 2
        lower, upper = rough_tails(math.exp(middle), means, df)
        beyond = lower > -target if target < 0 else upper < target
        low, high = (low, middle) if beyond else (middle, high)
    return float(f"{math.exp(low):.4g}")


GRIDS = Grid(1, mpf(0)), Grid(1.15, mpf("0.5"))


def check_pairs():
    """Two means: the distribution of Student's |t|, times the root of 2."""
    for df, q in ((mpf(3), mpf("1.5")), (mpf("0.5"), mpf(400))):
        lower, _ = studentized(q, 2, df, GRIDS[0])
        exact = mp.betainc(df / 2, mpf(1) / 2, 0, df / (df + q * q / 2), regularized=True)
        assert abs(1 - lower - exact) < AGREEMENT * exact, (df, q)


def rows():
    """Means, degrees of freedom and the target of each row."""
    targets = itertools.cycle(TARGETS)
    for means, df in itertools.product(MEANS, DFS):
        for target in itertools.islice(targets, PER_PAIR):
            yield means, df, target
    yield from itertools.product(MEANS, FAR_DFS, FAR_TARGETS)


def main():
    check_pairs()
    print("means,df,q,cumulative,upper,density")
    for means, df, target in rows():
        q = q_near(target, means, float(df))
        coarse, fine = ([lower, 1 - lower, density] for lower, density in
                        (studentized(mpf(q), means, mpf(float(df)), grid) for grid in GRIDS))
        assert all(abs(a - b) < AGREEMENT * b for a, b in zip(coarse, fine)), (means, df, q)
        print(f"{means},{df},{q!r}", *(mp.nstr(value, 20) for value in fine), sep=",", flush=True)


if __name__ == "__main__":
    main()
