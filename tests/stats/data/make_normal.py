#!/usr/bin/python3
"""Upper tails and quantiles of the standard normal distribution to 17 digits, from 50.

Lines: t,z,tail and q,p,quantile. Needs Debian's python3-mpmath.
Made with: ./make_normal.py > normal.csv
"""

import random

from mpmath import erfc, findroot, log, mp, mpf, nstr, sqrt

mp.dps = 50


def tail(z):
    return erfc(z / sqrt(mpf(2))) / 2


def quantile(p):
    """By the logarithm of the smaller tail, which is nearly quadratic far out."""
    small = min(p, 1 - p)
    start = sqrt(-2 * log(small)) - mpf("0.5") if small < mpf("0.1") else mpf("0.3")
    z = findroot(lambda x: log(tail(x)) - log(small), start)
    return z if p > mpf("0.5") else -z


def main():
    random.seed(1988)
    borders = [0.0, 2.0, 6.0, 1.9999999999999998, 5.999999999999999]
    spread = [random.uniform(-9, 38) for _ in range(150)] + [10 ** random.uniform(-12, 0.5) for _ in range(50)]
    for z in borders + [37.0, 37.5, -37.5] + spread:
        print(f"t,{z!r},{nstr(tail(mpf(z)), 17)}")
    fixed = [0.025, 0.075, 0.0749999, 0.925, 0.975, 1e-10, 1e-11, 1.4e-11, 1.38e-11, 1e-300, 0.9999999999]
    near = [0.5 + 10 ** random.uniform(-12, -1) for _ in range(20)]
    for p in fixed + near + [random.random() for _ in range(60)] + [10 ** random.uniform(-300, -1) for _ in range(60)]:
        print(f"q,{p!r},{nstr(quantile(mpf(p)), 17)}")


if __name__ == "__main__":
    main()
