#!/usr/bin/env python3
"""Prints the polynomials of the array kernels: Surface.h and ArcTangent.h hold what it prints.

usage: scene/kernels/fits.py        (needs mpmath)

Each polynomial is a least-squares fit on Chebyshev nodes of a closed form that is evaluated with 50 digits; the line
above it says how far it is off.
"""
from mpmath import asin, atan, cos, mp, mpf, nstr, pi, qr_solve, matrix, sin, sqrt, tan

mp.dps = 50
A = mpf(6378137)  # WGS 84, m
FLATTENING = 1 / mpf("298.257223563")
E2 = FLATTENING * (2 - FLATTENING)
SECOND_E2 = E2 / (1 - E2)
HIGHEST = mpf(12000)  # m


def fitted(terms, samples):
    """Coefficients of the basis functions `terms` over samples of (arguments, value, weight)."""
    rows = matrix(len(samples), len(terms))
    values = matrix(len(samples), 1)
    for i, (arguments, value, weight) in enumerate(samples):
        for j, term in enumerate(terms):
            rows[i, j] = weight * term(*arguments)
        values[i] = weight * value
    return qr_solve(rows, values)[0]


def nodes(count):
    return [cos(pi * (mpf(i) + mpf(1) / 2) / count) for i in range(count)]


def surface():
    """The two functions of z and the height that make a surface of constant geodetic height exact."""
    samples = []
    for node in nodes(26):
        latitude = asin(sqrt((1 + node) / 2))
        for height in (HIGHEST * node for node in nodes(12)):
            normal = A / sqrt(1 - E2 * sin(latitude) ** 2)
            p = (normal + height) * cos(latitude)
            z = (normal * (1 - E2) + height) * sin(latitude)
            zeta, eta = (z / A) ** 2, height / A
            bulge = (A * A + height * (height + 2 * A) - p * p - z * z) / (z * z)
            ratio = tan(latitude) * p / z
            samples.append((zeta, eta, (SECOND_E2 - bulge) / eta, (ratio - 1 - SECOND_E2) / eta))
    powers = [(m, n) for n, highest in enumerate((5, 3, 2, 1)) for m in range(highest + 1)]
    terms = [lambda u, v, m=m, n=n: u ** m * v ** n for m, n in powers]
    for name, column, metres in (("kBulge", 2, lambda s: s[0] * s[1] * A / 2), ("kRatio", 3, lambda s: s[1] * A / 2)):
        found = fitted(terms, [((s[0], s[1]), s[column], 1) for s in samples])
        worst = max(abs(sum(c * t(s[0], s[1]) for c, t in zip(found, terms)) - s[column]) * metres(s) for s in samples)
        print(f"// off by {nstr(worst, 2)} m")
        for power, c in sorted(zip(powers, found), key=lambda pair: pair[0]):
            print(f"constexpr double {name}{power[0]}{power[1]} = {nstr(c, 17)};")


def arc_tangent():
    """Degrees over the tangent, in powers of the tangent's square, up to 22.5 degrees."""
    terms = [lambda u, m=m: u ** m for m in range(11)]
    largest = tan(pi / 8) ** 2
    squares = [largest * (1 + node) / 2 for node in nodes(60)]
    samples = [((u,), atan(sqrt(u)) / sqrt(u) * 180 / pi, 1) for u in squares]
    found = fitted(terms, samples)
    worst = max(abs(sum(c * t(*s[0]) for c, t in zip(found, terms)) - s[1]) * sqrt(s[0][0]) for s in samples)
    print(f"// off by {nstr(worst, 2)} degrees")
    for m, c in enumerate(found):
        print(f"constexpr double kArc{m} = {nstr(c, 17)};")


surface()
arc_tangent()
