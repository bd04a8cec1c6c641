"""Poisson numbers of a mean from 1 to 128 as the whole part of a polynomial in a normal number z.

The mean is 2^e (1 + f), 0 <= f < 1; a row for each e = 0 .. 6. The polynomial is to be k + 1 where Phi(z) is the
probability of at most k. Least squares of the probabilities that single numbers gain or lose, over a grid of f; then each
round weighs by the inverse root of what is left, which leads from squares towards the total variation. The figures
behind the rows are total variations from the Poisson law, the largest over a finer grid.

A row: the constant of the first coefficient less 1, and of z^6; the line of z^5; the cubics of f of z^0 to z^4, of which
the first lacks its constant, put in front; the last value is not used.
"""
import math
from statistics import NormalDist

from floats import literal

NORMAL = NormalDist()
POWERS = [(j, i) for j in range(5) for i in range(4)] + [(5, 0), (5, 1), (6, 0)]
SCALE = 4.0  # of z, for well-conditioned equations


def thresholds(mean):
    """z and the number above it, where z parts k from k + 1, as far out as numbers of single precision reach."""
    term, below, rows, k = math.exp(-mean), 0.0, [], 0
    terms = []
    while True:
        terms.append(term)
        k += 1
        term *= mean / k
        if k > mean and term < 1e-12:
            break
    total = math.fsum(terms)
    for k, term in enumerate(terms):
        below += term / total
        above = math.fsum(terms[k + 1:]) / total
        if min(below, above) > 1e-10:
            z = NORMAL.inv_cdf(below) if below < 0.5 else -NORMAL.inv_cdf(above)
            rows.append((z, k + 1))
    return rows


def basis(z, f):
    return [(z / SCALE) ** j * (2 * f - 1) ** i for j, i in POWERS]


def solve(a, b):
    n = len(b)
    for c in range(n):
        p = max(range(c, n), key=lambda r: abs(a[r][c]))
        a[c], a[p], b[c], b[p] = a[p], a[c], b[p], b[c]
        for r in range(c + 1, n):
            m = a[r][c] / a[c][c]
            if m:
                for k in range(c, n):
                    a[r][k] -= m * a[c][k]
                b[r] -= m * b[c]
    x = [0.0] * n
    for r in reversed(range(n)):
        x[r] = (b[r] - math.fsum(a[r][k] * x[k] for k in range(r + 1, n))) / a[r][r]
    return x


def equations(mean, f):
    """Rows of the probabilities moved into each number, linear in the coefficients, with their right sides."""
    rows, previous = [], ([0.0] * len(POWERS), 0.0)
    for z, k in thresholds(mean):
        weight = NORMAL.pdf(z) / math.sqrt(mean)
        now = ([weight * x for x in basis(z, f)], weight * k)
        rows.append(([x - y for x, y in zip(now[0], previous[0])], now[1] - previous[1]))
        previous = now
    rows.append(([-x for x in previous[0]], -previous[1]))
    # A little for the displacements themselves, or the far ends would be free.
    for z, k in thresholds(mean):
        rows.append(([2e-5 * x for x in basis(z, f)], 2e-5 * k))
    return rows


def coefficients(e):
    nodes = [0.5 - 0.5 * math.cos(math.pi * (2 * i + 1) / 24) for i in range(12)]
    rows = [row for f in nodes for row in equations(2.0**e * (1 + f), f)]
    weights, n = [1.0] * len(rows), len(POWERS)
    for _ in range(8):
        a = [[0.0] * n for _ in range(n)]
        b = [0.0] * n
        for w, (x, y) in zip(weights, rows):
            for i in range(n):
                wx = w * x[i]
                if wx:
                    b[i] += wx * y
                    for j in range(n):
                        a[i][j] += wx * x[j]
        c = solve(a, b)
        left = [abs(math.fsum(p * q for p, q in zip(x, c)) - y) for x, y in rows]
        weights = [1 / math.sqrt(max(r, 1e-7)) for r in left]
    # From powers of z / SCALE and 2 f - 1 to powers of z and f.
    plain = {power: 0.0 for power in POWERS}
    for (j, i), value in zip(POWERS, c):
        for k in range(i + 1):
            plain[j, k] += value / SCALE**j * math.comb(i, k) * 2.0**k * (-1.0) ** (i - k)
    return plain


def value(c, z, f):
    return math.fsum(x * z**j * f**i for (j, i), x in c.items())


def total_variation(c, e, f):
    mean, moved = 2.0**e * (1 + f), [0.0]
    for z, k in thresholds(mean):
        low, high = z - 1, z + 1
        for _ in range(50):
            middle = (low + high) / 2
            low, high = (middle, high) if value(c, middle, f) < k else (low, middle)
        moved.append(NORMAL.cdf(low) - NORMAL.cdf(z))
    moved.append(0.0)
    return math.fsum(abs(x - y) for x, y in zip(moved[1:], moved)) / 2


for e in range(7):
    c = coefficients(e)
    largest = max(total_variation(c, e, k / 40) for k in range(41))
    row = [c[0, 0] - 1, c[5, 0], c[5, 1]]
    row += [c[0, 1], c[0, 2], c[0, 3], c[6, 0]]
    row += [c[j, i] for j in range(1, 5) for i in range(4)] + [0.0]
    print("{" + ", ".join(literal(x) for x in row) + "},  // %.1e" % largest)
