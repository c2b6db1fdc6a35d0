#!/usr/bin/python3
"""The coefficients of the normal upper tail (normal.cpp), with their largest relative error.

Each approximation is the quotient of two polynomials that agrees with the function at the Chebyshev
points of its interval. Needs Debian's python3-mpmath.
"""

from mpmath import cos, erfc, exp, lu_solve, matrix, mp, mpf, nstr, pi, polyval, sqrt

mp.dps = 60


def scaled_tail(z):
    return exp(z * z / 2) * erfc(z / sqrt(mpf(2))) / 2


def far_tail(s):
    return scaled_tail(1 / sqrt(s)) / sqrt(s)


def fit(function, low, high, above, below):
    """Numerator and denominator of these degrees, coefficients by rising powers."""
    count = above + below + 1
    system, right = matrix(count, count), matrix(count, 1)
    for i in range(count):
        x = (low + high) / 2 + (high - low) / 2 * cos(pi * (2 * i + 1) / (2 * count))
        value = function(x)
        for power in range(above + 1):
            system[i, power] = x**power
        for power in range(1, below + 1):
            system[i, above + power] = -value * x**power
        right[i] = value
    solution = list(lu_solve(system, right))
    return solution[: above + 1], [mpf(1)] + solution[above + 1 :]


def largest_error(function, low, high, numerator, denominator):
    points = (low + (high - low) * mpf(i) / 1999 for i in range(2000))
    return max(
        abs(polyval(numerator[::-1], x) / polyval(denominator[::-1], x) / function(x) - 1) for x in points
    )


for name, function, low, high, above, below in [
    ("kNear", scaled_tail, mpf(0), mpf(2), 6, 7),
    ("kMiddle", scaled_tail, mpf(2), mpf(6), 6, 7),
    ("kFar", far_tail, mpf("1e-8"), mpf(1) / 36, 5, 5),
]:
    coefficients = fit(function, low, high, above, below)
    error = largest_error(function, max(low, mpf(1) / 1600 if name == "kFar" else low), high, *coefficients)
    print(name, nstr(error, 3))
    for polynomial in coefficients:
        print("   ", ", ".join(nstr(c, 17) for c in polynomial))
