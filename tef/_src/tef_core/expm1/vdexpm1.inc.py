"""2^(j/256), j = 0 .. 255: the leading 26 bits and, as a fraction of them, the rest."""
import mpmath
from floats import emit, rounded


def entry(j):
    power = mpmath.mpf(2) ** (mpmath.mpf(j) / 256)
    high = rounded(power, 26)
    return high, rounded((power - high) / high)


emit([entry(j) for j in range(256)], "2^(j/256): leading 26 bits, relative rest")
