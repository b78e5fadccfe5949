#!/ usr / bin / env python3
""
        "Prints the polynomials of the array kernels: Surface.h and ArcTangent.h hold what it prints.

        usage : scene /
                kernels /
                fits.py(needs mpmath)

                    Each polynomial is a least
    - squares fit on Chebyshev nodes of a closed form that is evaluated with 50 digits; the line
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


def arc_tangent():
    """Degrees over the tangent, in powers of the tangent's square, up to 22.5 degrees."""
    terms = [lambda u, m=m: u ** m for m in range(10)]
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
