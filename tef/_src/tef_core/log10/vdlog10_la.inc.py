"""For R = 222 .. 444: a logarithm and the exponent that goes with it, log10(444/R) and 1023 for R above 314,
log10(222/R) and 1022 below."""
import mpmath
from floats import emit, rounded


def entry(r):
    scale, bias = (444, 1023) if r > 314 else (222, 1022)
    return rounded(mpmath.log10(mpmath.mpf(scale) / r)), bias


emit([entry(r) for r in range(222, 445)], "log10(444/R) and 1023, or log10(222/R) and 1022")
