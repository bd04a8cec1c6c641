"""For the cells of [1/16, 19.5), 64 to each power of two, that begin at a: tanh a, 1 - tanh^2 a, what tanh a lacks. A
cell's row is told by the low four bits of a's exponent field and the leading six of its fraction. The row in front of the
first, for arguments below, has a = 0."""
import mpmath
from floats import emit, rounded


def entry(a):
    tanh = mpmath.tanh(a)
    return rounded(tanh), rounded(1 - tanh**2), rounded(tanh - rounded(tanh)), 0


rows = [(0, 0, 0, 0)] * 1024
for exponent in range(-4, 5):
    for leading in range(64):
        a = mpmath.ldexp(1 + mpmath.mpf(leading) / 64, exponent)
        if a < 19.5:
            rows[(exponent + 1023) % 16 * 64 + leading] = entry(a)
rows[(-5 + 1023) % 16 * 64 + 63] = entry(mpmath.mpf(0))
emit(rows, "tanh a, 1 - tanh^2 a, low part of tanh a")
