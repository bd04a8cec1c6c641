"""For m = 1 + i/512, i = 0 .. 512: R, nearly unit/m and short, and log2(unit/R) - 1023 as a high and a low part.

`unit` is log2 e cut to 23 bits, and R has 24: the product of R and 26 bits of a number is exact. R is `unit` itself for
m = 1 and half of it for m = 2, where the logarithms are 0 and 1, so that nothing is lost for numbers near 1. The high
part is a multiple of 2^-42: it stays exact when a biased exponent is added."""
import mpmath
from floats import emit, rounded, truncated

UNIT = float.fromhex("0x1.715474p0")


def row(i):
    R = rounded(UNIT / (1 + mpmath.mpf(i) / 512), 24)
    log = mpmath.log(UNIT / mpmath.mpf(R), 2)
    high = truncated(log, -42)
    return high - 1023, rounded(log - high), R, 0


emit([row(i) for i in range(513)], "log2(unit/R) - 1023: high part, low part; R; 0")
