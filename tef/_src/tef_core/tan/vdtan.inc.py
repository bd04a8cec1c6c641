"""tan t, t = j pi/256, j = 0 .. 63 and -64 .. -1: a double and what it lacks."""
import mpmath
from floats import emit, pair


def entry(j):
    return pair(mpmath.tan(mpmath.pi * j / 256))


emit([entry(j if j < 64 else j - 128) for j in range(128)], "tan(j pi/256), j = 0 .. 63, -64 .. -1: high, low part")
