"""256/pi times 2^(e - 1023), e = 1024 .. 2047, in six doubles, for significands of 53 bits, 1 <= |m| < 2, in two parts: the
higher a multiple of 2^-26, the lower below that.

Multiples of 2^61 are left out: m times them is a multiple of 512. The first double is a multiple of 2^35 (so that the higher part
of m times it is one of 512) and each next one has 26 bits more, so that their products with both parts are exact but for the
last one's, which is what the others lack."""
import mpmath
from floats import emit, rounded, truncated

mpmath.mp.prec = 1400


def entry(e):
    rest = mpmath.ldexp(256 / mpmath.pi, e - 1023)
    rest -= mpmath.ldexp(mpmath.nint(mpmath.ldexp(rest, -61)), 61)
    parts = []
    for unit in (35, 9, -17, -43, -69):
        parts.append(truncated(rest, unit))
        rest -= parts[-1]
    return (*parts, rounded(rest))


emit([entry(e) for e in range(1024, 2048)], "256/pi 2^(e - 1023) modulo 2^61, 26 bits each: a row for each exponent field e from 1024 on")
