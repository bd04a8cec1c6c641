"""For a = j/128, j = 0 .. 4927: what the double next to the normal distribution at -a lacks; from a = 34 on 2^300 times as
large."""
import mpmath
from floats import emit, pair


def entry(j):
    scale = mpmath.mpf(2) ** (300 if j >= 34 * 128 else 0)
    return pair(scale * mpmath.erfc(mpmath.mpf(j) / 128 / mpmath.sqrt(2)) / 2)[1:]


emit([entry(j) for j in range(4928)], "erfc(a/sqrt(2))/2 less its double; a = j/128")
