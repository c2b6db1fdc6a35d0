#!/usr/bin/python3
"""Probabilities of the studentized range by Algorithm AS 190, in 30 digits.

A second program of the same algorithm, with the same step sizes, stopping limits and constants: its
results are what the algorithm says, whatever that is worth as an integral. Lines of the table:
p,q,df,means,probability.

Needs Debian's python3-mpmath. Made with: ./studentized_range.py > studentized_range.csv
"""

import random

from mpmath import erfc, exp, log, mp, mpf, nstr, sqrt

mp.dps = 30


def upper(x):
    return erfc(x / sqrt(mpf(2))) / 2


def probability(q, v, r):
    if v < 1 or r < 2:
        raise ValueError
    if q <= 0:
        return mpf(0)
    g = mpf("0.45") * mpf(r) ** mpf("-0.2")
    gmid = log(mpf(r)) / 2
    r1 = r - 1
    finite = v <= 120
    if finite:
        h = mpf("0.45") / sqrt(mpf(v))
        w = mpf(v) / 2
        if v == 1:
            c = mpf("0.193064705")
        elif v == 2:
            c = mpf("0.293525326")
        else:
            inner = (mpf("-0.00268132716") / w + mpf("0.00347222222")) / w + mpf("0.0833333333")
            c = sqrt(w) * mpf("0.318309886") / (1 + inner / w)
        c = log(c * r * g * h)
    else:
        c = log(r * g * mpf("0.39894228"))

    chi = {}

    def chi_node(j):
        if j not in chi:
            e_t = exp(h * j)
            chi[j] = (e_t, v * (h * j + mpf("0.5") - e_t**2 / 2))
        return chi[j]

    def piece(exponent, x, pz):
        difference = upper(x) - pz
        return exp(exponent + r1 * log(difference)) if difference > 0 else mpf(0)

    total = mpf(0)
    history = [mpf(1), mpf(1)]  # two back, one back
    for k in range(1, 16):
        for sign in [1] if k == 1 else [1, -1]:
            z = gmid + sign * (k - 1) * g
            if history[0] <= mpf("0.0001") and k >= 8:
                contribution = mpf(0)
            else:
                e = c - z**2 / 2
                pz = upper(z)
                contribution = piece(e, z - q, pz)
                for direction in [1, -1] if finite else []:
                    for j in range(1, 16):
                        e_t, w_t = chi_node(direction * j)
                        term = piece(e + w_t, z - q * e_t, pz)
                        contribution += term
                        number = j if direction == 1 else j + 15
                        if term <= mpf("3e-5") and (number > 3 or k >= 8):
                            break
            total += contribution
            if k > 7 and contribution <= mpf("0.0001") and history[1] <= mpf("0.0001"):
                return total
            history = [history[1], contribution]
    return total


def main():
    random.seed(190)
    degrees = [1, 2, 3, 7, 20, 60, 119, 120, 121, 100000]
    counts = [2, 3, 5, 10, 40, 200]
    cases = [(q, v, r) for q in [0.5, 3.5, 8.0] for v in degrees for r in counts]
    cases += [
        (random.lognormvariate(1, 1), random.choice([random.randint(1, 125), 10**6]), random.randint(2, 100))
        for _ in range(150)
    ]
    cases += [(q, v, 1000000) for q in [5.0, 10.0, 20.0] for v in [1, 30, 500]]
    cases += [(q, 5, 4) for q in [1e-12, 1e-3, 0.02, 50.0, 1000.0, 1e300]]
    for q, v, r in cases:
        print(f"p,{q!r},{v},{r},{nstr(probability(mpf(q), v, r), 17)}")


if __name__ == "__main__":
    main()
