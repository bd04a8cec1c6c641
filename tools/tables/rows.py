"""Rows of tables: a function by polynomials about points, from its Taylor series there."""
import mpmath
from mpmath import mpf

mpmath.mp.prec = 160

LONG = 26  # terms of a Taylor series that leave nothing out


def series_of_ode(f0, right_hand_side, terms):
    """The Taylor coefficients of f with f(0) = f0 and f' = right_hand_side(coefficients so far, k), term by term."""
    f = [f0]
    for k in range(terms - 1):
        f.append(right_hand_side(f, k) / (k + 1))
    return f


def economized(series, low, high, terms):
    """The polynomial of `terms` terms that is nearest to a longer one on [low, high]: interpolation at Chebyshev's nodes, in
    powers of the same variable."""
    middle, half = (mpf(low) + high) / 2, (mpf(high) - low) / 2
    nodes = [mpmath.cos(mpmath.pi * (2 * i + 1) / (2 * terms)) for i in range(terms)]
    values = [mpmath.polyval(series[::-1], middle + half * t) for t in nodes]
    # Chebyshev coefficients, then powers of t, then of r = middle + half t
    cheb = [(2 if k else 1) * mpmath.fsum(v * mpmath.cos(k * mpmath.acos(t)) for v, t in zip(values, nodes)) / terms
            for k in range(terms)]
    powers, previous, current = [mpf(0)] * terms, [mpf(1)], [mpf(0), mpf(1)]
    for k in range(terms):
        if k == 0:
            t_k = previous
        elif k == 1:
            t_k = current
        else:
            t_k = [mpf(0)] + [2 * x for x in current]
            for i, x in enumerate(previous):
                t_k[i] -= x
            previous, current = current, t_k
        for i, x in enumerate(t_k):
            powers[i] += cheb[k] * x
    shifted = [mpf(0)] * terms
    for k, c in enumerate(powers):  # ((r - middle)/half)^k
        for i in range(k + 1):
            shifted[i] += c * mpmath.binomial(k, i) * (-middle) ** (k - i) / half ** k
    return shifted


def coefficients(series, slope, low, high, terms):
    """Of f(r) = f(0) + slope r + r (p0 + p1 r + ...): the p."""
    return economized([series[1] - slope] + series[2:], low, high, terms)
