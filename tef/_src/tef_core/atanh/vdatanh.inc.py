"""atanh(1 - D) for D = (32 + i) 2^(k - 5), i = 0 .. 31, k = -53 .. -1, and for D = 1: a row's number is what the leading
bits of D are beyond those of 2^-53."""
import mpmath
from floats import emit, rounded


def entry(row):
    D = mpmath.ldexp(32 + row % 32, row // 32 - 53 - 5)
    return (rounded(mpmath.log((2 - D) / D) / 2),)


emit([entry(row) for row in range(53 * 32 + 1)], "atanh(1 - D), D from 2^-53 to 1")
