"""For a = j/128, j = 0 .. 767: erf a, and its derivative there."""
import mpmath
from floats import emit, rounded


def entry(j):
    a = mpmath.mpf(j) / 128
    return rounded(mpmath.erf(a)), rounded(2 / mpmath.sqrt(mpmath.pi) * mpmath.exp(-a * a))


emit([entry(j) for j in range(768)], "erf a, 2/sqrt(pi) e^(-a^2); a = j/128")
