"""2^(j/256), j = 0 .. 255, as a double and, as a fraction of it, what it lacks."""
import mpmath
from floats import emit, rounded


def entry(j):
    power = mpmath.mpf(2) ** (mpmath.mpf(j) / 256)
    high = rounded(power)
    return high, rounded((power - high) / high)


emit([entry(j) for j in range(256)], "2^(j/256): high part, relative low part")
