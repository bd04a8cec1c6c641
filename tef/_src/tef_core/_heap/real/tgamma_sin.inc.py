"""sin(pi a)/pi by rows for a = k/16, k = 0 .. 8."""
import mpmath
from floats import emit
from gamma_rows import LONG, mpf, row


def series(a):
    turns = [mpmath.sin, mpmath.cos, lambda x: -mpmath.sin(x), lambda x: -mpmath.cos(x)]
    return [turns[j % 4](mpmath.pi * a) * mpmath.pi ** (j - 1) / mpmath.factorial(j) for j in range(LONG)]


emit([row(series(mpf(k) / 16), mpf(1) / 32) for k in range(9)],
     "sin(pi a)/pi; slope; what the value lacks; what is left of the change, by powers of r; a = k/16")
