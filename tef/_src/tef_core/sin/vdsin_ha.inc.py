"""sin and cos of t = j pi/256, j = 0 .. 511: the rows of the sine and cosine of double precision.

The cosine's first part is the power of two next to it, so that its product with any number is exact; where the
cosine is 0 it is 0. The sine is a double and what it lacks."""
import mpmath
from floats import emit, pair, rounded


def power_next_to(x):
    if x == 0:
        return mpmath.mpf(0)
    return mpmath.sign(x) * mpmath.mpf(2) ** mpmath.nint(mpmath.log(abs(x), 2))


def entry(j):
    sin, cos = (0 if abs(f) < 1e-50 else f for f in (mpmath.sinpi(mpmath.mpf(j) / 256), mpmath.cospi(mpmath.mpf(j) / 256)))
    short = power_next_to(cos)
    return (rounded(cos - short), float(short), *pair(sin))


emit([entry(j) for j in range(512)], "cos(j pi/256) less its power of two, the power; sin(j pi/256): high, low part")
