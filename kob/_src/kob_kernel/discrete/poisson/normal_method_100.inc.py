"""Poisson numbers of a mean m from 100 on, as the whole part of a polynomial in a normal number.

x is normal with mean m + 1 + Wc(t) and deviation sqrt(m + Sgm(t)), t = 1 / m; with y = x less its mean, the number is the
whole part of x + Q1(t) y + Q2(t) y^2 + Q3(t) y^3. Wc and Sgm are given; the Q, polynomials of degree 4 by Chebyshev
interpolation on 0 < t <= 0.01, make the whole the expansion of E. A. Cornish and R. A. Fisher (Abramowitz and Stegun,
26.2.49) for the Poisson law with Sheppard's correction for whole numbers, to its third order.
"""
import math
from statistics import NormalDist

import mpmath
from floats import literal, rounded

NORMAL = NormalDist()
WC = [-0.6666957198, -0.01941020862]
SGM = [-0.05580667628, -0.000975814817]


def corrections(t):
    m = 1 / mpmath.mpf(t)
    variance = m - mpmath.mpf(1) / 12
    sigma, dev = mpmath.sqrt(variance), mpmath.sqrt(m + SGM[0] + SGM[1] * t)
    g1, g2, g3 = m / sigma**3, (m + mpmath.mpf(1) / 120) / sigma**4, m / sigma**5
    linear = sigma * (1 - g2 / 8 + 5 * g1**2 / 36)
    square = sigma * (g1 / 6 - g3 / 20 + 5 * g1 * g2 / 24 - 53 * g1**3 / 324)
    cube = sigma * (g2 / 24 - g1**2 / 18)
    return linear / dev - 1, square / dev**2, cube / dev**3


def interpolated(which):
    nodes = [mpmath.mpf(0.005) * (1 - mpmath.cos(mpmath.pi * (2 * k + 1) / 10)) for k in range(5)]
    a = mpmath.matrix(5, 5)
    b = mpmath.matrix(5, 1)
    for i, t in enumerate(nodes):
        b[i] = corrections(t)[which]
        for j in range(5):
            a[i, j] = t**j
    return [rounded(x) for x in mpmath.lu_solve(a, b)]


def polynomial(c, t):
    return math.fsum(x * t**i for i, x in enumerate(c))


def total_variation(m, q):
    t = 1 / m
    shift, dev = m + 1 + polynomial(WC, t), math.sqrt(m + polynomial(SGM, t))
    factors = [polynomial(c, t) for c in q]

    def number(z):
        y = dev * z
        return shift + y + y * (factors[0] + y * (factors[1] + y * factors[2]))

    moved, below = [0.0], 0.0
    for k in range(int(m + 8 * math.sqrt(m))):
        below += math.exp(k * math.log(m) - m - math.lgamma(k + 1))
        low, high = -9.0, 9.0
        for _ in range(60):
            middle = (low + high) / 2
            low, high = (middle, high) if number(middle) < k + 1 else (low, middle)
        moved.append(NORMAL.cdf(low) - below)
    return math.fsum(abs(x - y) for x, y in zip(moved[1:], moved)) / 2


q = [interpolated(which) for which in range(3)]
print("// Total variation from the Poisson law: %.1e at a mean of 100, %.1e at 1000." %
      (total_variation(100.0, q), total_variation(1000.0, q)))
for name, values in zip(("Wc", "Sgm", "Q1", "Q2", "Q3"), [WC, SGM] + q):
    print("constexpr double __kob_i%s_100[] = {" % name + ", ".join(literal(x) for x in values) + "};")
