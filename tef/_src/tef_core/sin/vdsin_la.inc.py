"""sin and cos of t = j pi/256, j = 0 .. 511, as doubles. sin 0 is -0: added to a zero it leaves that its sign.

In the rows beside a zero of one of them the result may be half of it, and what it lacks as a double counts twice. There the
other one, times an angle of up to pi/512 towards the zero, makes that good."""
import mpmath
from floats import emit, rounded


def beside(f, small):
    return f * (1 - (small - rounded(small)) / (0.45 * small))


def entry(j):
    sin, cos = mpmath.sinpi(mpmath.mpf(j) / 256), mpmath.cospi(mpmath.mpf(j) / 256)
    if j % 256 in (1, 255):
        cos = beside(cos, sin)
    if j % 256 in (127, 129):
        sin = beside(sin, cos)
    return (rounded(sin) if j else -0.0, rounded(cos))


emit([entry(j) for j in range(512)], "sin(j pi/256), cos(j pi/256)")
