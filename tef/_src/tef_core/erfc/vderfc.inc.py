"""For a = j/128, j = 0 .. 3487: erfc a, and its derivative there, sign turned; from a = 24 on 2^300 times as large."""
import mpmath
from floats import emit, rounded


def entry(j):
    a, scale = mpmath.mpf(j) / 128, mpmath.mpf(2) ** (300 if j >= 24 * 128 else 0)
    return rounded(scale * mpmath.erfc(a)), rounded(scale * 2 / mpmath.sqrt(mpmath.pi) * mpmath.exp(-a * a))


emit([entry(j) for j in range(3488)], "erfc a, 2/sqrt(pi) e^(-a^2); a = j/128")
