"""1/m and log2 m for m = 1 + i/512, i = 0 .. 512."""
import mpmath
from floats import emit, rounded


def row(i):
    m = 1 + mpmath.mpf(i) / 512
    return rounded(1 / m), rounded(mpmath.log(m, 2))


emit([row(i) for i in range(513)], "1/m, log2 m")
