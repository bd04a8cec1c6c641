"""2^(j/128), j = 0 .. 127: the leading 26 bits and, as a fraction of them, the rest."""
import mpmath
from floats import emit, rounded


def entry(j):
    power = mpmath.mpf(2) ** (mpmath.mpf(j) / 128)
    high = rounded(power, 26)
    return high, rounded((power - high) / high)


emit([entry(j) for j in range(128)], "2^(j/128): leading 26 bits, relative rest")
