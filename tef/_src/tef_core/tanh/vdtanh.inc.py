"""0 and the middles a of the cells of [1/16, 19.5), 32 to each power of two: tanh a, 1 - tanh^2 a, what tanh a lacks."""
import mpmath
from floats import emit, rounded


def entry(a):
    tanh = mpmath.tanh(a)
    return rounded(tanh), rounded(1 - tanh**2), rounded(tanh - rounded(tanh)), 0


cells = [mpmath.ldexp(mpmath.mpf(64 + 2 * j + 1) / 64, e) for e in range(-4, 5) for j in range(32)]
emit([entry(a) for a in [0] + [a for a in cells if a < 19.5]], "tanh a, 1 - tanh^2 a, low part of tanh a")
