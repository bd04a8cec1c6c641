"""For a = j/128, j = 0 .. 4927: the normal distribution at -a, and its density; from a = 34 on 2^300 times as large."""
import mpmath
from floats import emit, rounded


def entry(j):
    a, scale = mpmath.mpf(j) / 128, mpmath.mpf(2) ** (300 if j >= 34 * 128 else 0)
    return (rounded(scale * mpmath.erfc(a / mpmath.sqrt(2)) / 2),
            rounded(scale / mpmath.sqrt(2 * mpmath.pi) * mpmath.exp(-a * a / 2)))


emit([entry(j) for j in range(4928)], "erfc(a/sqrt(2))/2, e^(-a^2/2)/sqrt(2 pi); a = j/128")
