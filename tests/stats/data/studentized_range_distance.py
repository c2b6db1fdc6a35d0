#!/usr/bin/python3
"""How far Algorithm AS 190 is from the probability of the studentized range.

For each number of degrees of freedom and of means the q, of 301 from 0.3 to 90, where the algorithm
(studentized_range.py) is farthest from the integral that it approximates. That integral is summed here over
grids so fine that halving their steps changes it by less than MOST_CHANGE, which is checked at three q.
Lines: d,q,df,means,probability,distance.

Needs Debian's python3-mpmath. Made with: ./studentized_range_distance.py > studentized_range_distance.csv
"""

from math import erfc, exp, fsum, lgamma, log, pi, sqrt

from mpmath import mp, mpf
import studentized_range

MOST_CHANGE = 1e-8  # of a probability by halved steps


def tail(z):
    return erfc(z / sqrt(2)) / 2


def of_known_deviation(w, r, step):
    """The probability that the range of r standard normal values is at most w: by the largest value z."""
    total, z = [], -7.5
    while z < 7.5:
        between = tail(z - w) - tail(z) if z > 0 else tail(-z) - tail(w - z)
        if between > 0:
            total.append(exp(-z * z / 2) * between ** (r - 1))
        z += step
    return r * step / sqrt(2 * pi) * fsum(total)


def exact(q, v, r, refinement=1):
    """The mean of that over the estimate e^t of the deviation, with v degrees of freedom."""
    constant = log(2) + v / 2 * log(v / 2) - lgamma(v / 2)
    weight = lambda t: exp(constant + v * (t - exp(2 * t) / 2))
    step = min(0.1, 0.3 / sqrt(v)) / refinement
    total = []
    for direction in 1, -1:
        k = 0 if direction == 1 else 1
        while True:
            t = direction * k * step
            if weight(t) < 1e-11:
                break
            total.append(weight(t) * of_known_deviation(q * exp(t), r, 0.2 / refinement))
            k += 1
    return step * fsum(total)


def main():
    mp.dps = 15
    grid = [0.3 * 300 ** (i / 300) for i in range(301)]
    for v in [1, 2, 3, 5, 10, 30, 120, 121, 200, 500]:
        for r in [2, 5, 10, 20, 100]:
            for q in grid[0], grid[-1], 3.0:
                assert abs(exact(q, v, r) - exact(q, v, r, 2)) < MOST_CHANGE, (q, v, r)
            distances = [(abs(float(studentized_range.probability(mpf(q), v, r)) - exact(q, v, r)), q) for q in grid]
            distance, q = max(distances)
            print(f"d,{q!r},{v},{r},{exact(q, v, r):.9g},{distance:.6g}", flush=True)


if __name__ == "__main__":
    main()
