"""For R = 222 .. 444: log10(444/R) - 1023 log10 2, a high and a low part.

The high part is a multiple of 2^-43, so that it can be added to a multiple of L_hi without a rounding error, and
for the first and last entry it is a multiple of L_hi itself, so that the sum is 0 for arguments near 1."""
import mpmath
from floats import emit, rounded, truncated

L_HI = float.fromhex("0x1.34413509fp-2")
L_LO = float.fromhex("0x1.e7fbcc47cp-40")


def entry(r):
    n = {222: 1022, 444: 1023}.get(r)
    if n:
        return -n * L_HI, -n * L_LO
    log = mpmath.log10(mpmath.mpf(444) / r)
    high = truncated(log, -43)
    return -1023 * L_HI + high, rounded(-1023 * mpmath.mpf(L_LO) + (log - high))


emit([entry(r) for r in range(222, 445)], "log10(444/R) - 1023 log10 2: high part, low part")
