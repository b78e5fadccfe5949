#!/usr/bin/env python3
"""Prints the polynomials of the array kernels: Surface.h, ArcTangent.h and GroundToPixel.inl hold what it prints.

usage: python3 scene/kernels/fits.py        (needs mpmath)

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
DEGREE = pi / 180


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
    """Q of Surface.h, from z and p of points at known latitudes and heights; checked on tan(latitude) too."""
    samples = []
    for node in nodes(26):
        latitude = asin(sqrt((1 + node) / 2))
        for height in (HIGHEST * node for node in nodes(12)):
            normal = A / sqrt(1 - E2 * sin(latitude) ** 2)
            p = (normal + height) * cos(latitude)
            z = (normal * (1 - E2) + height) * sin(latitude)
            zeta, eta = (z / A) ** 2, height / A
            g = (A * A + height * (height + 2 * A) - p * p - z * z) / (z * z)
            ratio = tan(latitude) * p / z
            metres = abs(height) / 2  # of height on the ground for an error of q eta, per zeta; of latitude, at most
            samples.append(((zeta, eta), (SECOND_E2 - g) / eta, zeta * metres, (1 + SECOND_E2 - ratio) / eta, metres))
    powers = [(m, n) for m in range(4) for n in range(4 - m)]
    terms = [lambda u, v, m=m, n=n: u ** m * v ** n for m, n in powers]
    found = fitted(terms, [sample[:3] for sample in samples])
    heights = latitudes = 0
    for (zeta, eta), q, weight, r, metres in samples:
        values = [c * term(zeta, eta) for c, term in zip(found, terms)]
        heights = max(heights, abs(sum(values) - q) * weight)
        latitudes = max(latitudes, abs(sum((m + 1) * value for (m, _), value in zip(powers, values)) - r) * metres)
    print(f"// off by {nstr(heights, 2)} m in height, {nstr(latitudes, 2)} m in latitude")
    for (m, n), c in zip(powers, found):
        print(f"constexpr double kBulge{m}{n} = {nstr(c / A ** (2 * m + n + 1), 17)};  // 1/m^{2 * m + n + 1}")


def series(name, exact, powers, largest, off, unit):
    """`exact` of u from 0 to `largest` in these powers of u; off(u, error) is the error of what is made of it."""
    terms = [lambda u, m=m: u ** m for m in powers]
    arguments = [largest * (1 + node) / 2 for node in nodes(60)]
    samples = [((u,), exact(u), 1) for u in arguments]
    found = fitted(terms, samples)
    worst = max(off(u, abs(sum(c * term(u) for c, term in zip(found, terms)) - exact(u))) for u in arguments)
    print(f"// off by {nstr(worst, 2)}{unit}")
    for m, c in zip(powers, found):
        print(f"constexpr double k{name}{m} = {nstr(c, 17)};")


def arc_tangent():
    """Degrees over the tangent, in powers of the tangent's square, up to 22.5 degrees."""
    largest = tan(pi / 8) ** 2
    series("Arc", lambda u: atan(sqrt(u)) / sqrt(u) / DEGREE, range(10), largest, lambda u, e: e * sqrt(u), " degrees")


def sine_and_cosine():
    """The sine over the degrees and what the cosine adds to 1, in powers of the degrees' square, up to 45 degrees."""
    largest = mpf(45) ** 2
    series("Sine", lambda u: sin(sqrt(u) * DEGREE) / sqrt(u), range(7), largest, lambda u, e: e / DEGREE, "")
    series("Cosine", lambda u: cos(sqrt(u) * DEGREE) - 1, range(1, 7), largest, lambda u, e: e, "")


def normal_length():
    """What the length of the normal down to the axis adds to a, over a, in powers of sin(latitude)^2."""
    series("Normal", lambda u: 1 / sqrt(1 - E2 * u) - 1, range(1, 6), 1, lambda u, e: e, "")


surface()
arc_tangent()
sine_and_cosine()
normal_length()
