"""sin and cos of t = j pi/256, j = 0 .. 255: each a double and what it lacks."""
import mpmath
from floats import emit, pair


def entry(j):
    turn = mpmath.mpf(j) / 256
    return (*pair(mpmath.sinpi(turn)), *pair(mpmath.cospi(turn) if j != 128 else 0))


emit([entry(j) for j in range(256)], "sin(j pi/256): high, low part; cos(j pi/256): high, low part")
