"""For R = 512 .. 1024: -1022 ln 2 - ln(R/512), a high and a low part.

The high part is a multiple of 2^-42, so that it can be added to a multiple of L_hi without a rounding error, and
where R is a power of two it is a multiple of L_hi itself, so that the sum is 0 for arguments near 1."""
import mpmath
from floats import emit, rounded, truncated

L_HI = float.fromhex("0x1.62e42fefap-1")
L_LO = float.fromhex("0x1.cf79abc9ep-40")


def entry(r):
    n = {512: 1022, 1024: 1023}.get(r)
    if n:
        return -n * L_HI, -n * L_LO
    log = mpmath.log(mpmath.mpf(r) / 512)
    high = truncated(log, -42)
    return -1022 * L_HI - high, rounded(-1022 * mpmath.mpf(L_LO) - (log - high))


emit([entry(r) for r in range(512, 1025)], "-1022 ln 2 - ln(R/512): high part, low part")
