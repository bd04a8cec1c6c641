"""Gamma by rows for a = k/8, k = 8 .. 280: for single precision."""
from floats import emit, rounded
from gamma_rows import exponential_of, log_gamma_series, mpf
from rows import coefficients


def row(a):
    series = exponential_of(log_gamma_series(a))
    return [rounded(x) for x in [series[0]] + coefficients(series, 0, -mpf(1) / 16, mpf(1) / 16, 7)]


emit([row(mpf(k) / 8) for k in range(8, 281)], "gamma(a + r) by powers of r; a = k/8")
