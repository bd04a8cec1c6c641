"""For R = 512 .. 1024: a logarithm and the exponent that goes with it, -ln(R/1024) and 1023 for R above 724, -ln(R/512)
and 1022 below."""
import mpmath
from floats import emit, rounded


def entry(r):
    scale, bias = (1024, 1023) if r > 724 else (512, 1022)
    return rounded(-mpmath.log(mpmath.mpf(r) / scale)), bias


emit([entry(r) for r in range(512, 1025)], "-ln(R/1024) and 1023, or -ln(R/512) and 1022")
