#!/usr/bin/python3
"""Exact tail probabilities of rank sums, counted in whole numbers and rounded once.

Writes exact.csv and exact_small.csv into the current folder, in a minute. Lines as in reference.csv:
  u,n1,n2,W,less,greater    rank sum of the first of two samples
  v,n,V,less,greater        rank sum of the positive differences
"""

from fractions import Fraction


def counts_of_subsets(n, size):
    """How many subsets of 1 to n have a sum, by sum; of this size, or of any size for None. The counts
    stand side by side in one whole number, each in as many bytes as the largest needs."""
    slot = 8 * (n // 8 + 1)
    if size is None:
        packed = 1
        for rank in range(1, n + 1):
            packed += packed << rank * slot
        last = n * (n + 1) // 2
    else:
        by_size = [1] + [0] * size
        for rank in range(1, n + 1):
            for k in range(size, 0, -1):
                by_size[k] += by_size[k - 1] << rank * slot
        packed, last = by_size[size], size * n
    data = packed.to_bytes((last + 1) * slot // 8, "little")
    return [int.from_bytes(data[i:i + slot // 8], "little") for i in range(0, len(data), slot // 8)]


def put(kind, sizes, counts, least, greatest, steps):
    total = sum(counts)
    step = max(1, (greatest - least) // steps)
    below, next_value = 0, least
    for value in range(least, greatest + 1):
        if value == next_value:
            less = Fraction(below + counts[value], total)
            greater = Fraction(total - below, total)
            print(kind, *sizes, value, repr(float(less)), repr(float(greater)), sep=",", file=out)
            next_value += step
        below += counts[value]


FILES = {"exact.csv": ([(3, 4), (20, 30), (50, 50), (1, 2500), (3, 833), (25, 100)],
                       [(12, 20), (200, 40), (500, 8), (1000, 8)]),
         "exact_small.csv": ([(1, 1), (1, 6), (3, 2), (4, 4), (5, 4), (4, 7)], [(1, 9), (2, 9), (5, 20), (11, 70)])}
for name, (two_samples, one_sample) in FILES.items():
    with open(name, "w", encoding="ascii") as out:
        for n1, n2 in two_samples:
            least = n1 * (n1 + 1) // 2
            put("u", (n1, n2), counts_of_subsets(n1 + n2, n1), least, least + n1 * n2, 24)
        for n, steps in one_sample:
            put("v", (n,), counts_of_subsets(n, None), 0, n * (n + 1) // 2, steps)
