"""What the tables of the gamma functions share: rows for a = k/8, or k/16."""
import mpmath
from floats import rounded, truncated
from mpmath import mpf
from rows import LONG, coefficients

TERMS = 11


def log_gamma_series(a):
    """The Taylor coefficients of ln gamma about a."""
    return [mpmath.loggamma(a)] + [mpmath.psi(k - 1, a) / mpmath.factorial(k) for k in range(1, LONG)]


def exponential_of(series):
    """The Taylor coefficients of e^f from those of f."""
    g = [mpmath.exp(series[0])]
    for k in range(1, LONG):
        g.append(mpmath.fsum(j * series[j] * g[k - j] for j in range(1, k + 1)) / k)
    return g


def row(series, half):
    """The value, a slope of 4 bits, what the value lacks, and the polynomial (f(a + r) - f(a) - slope r)/r."""
    value = rounded(series[0])
    slope = rounded(series[1], 4)
    p = coefficients(series, slope, -half, half, TERMS)
    return [rounded(x) if abs(x) > mpf(2) ** -100 else 0.0 for x in [value, slope, series[0] - value] + p]
