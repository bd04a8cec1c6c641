"""For the cells of [2^-6, 2^27), 32 to each power of two, whose arguments are rounded to c: asinh c, sqrt(c^2 + 1), what
asinh c lacks, c. A cell's row is told by the low six bits of c's exponent field and the leading five of its fraction. The row
in front of the first, for arguments below, has c = 0."""
import mpmath
from cells import emit_cells
from floats import rounded


def entry(c):
    value = mpmath.asinh(c)
    return rounded(value), rounded(mpmath.sqrt(c * c + 1)), rounded(value - rounded(value)), rounded(c)


emit_cells(entry, -6, 27, "asinh c, sqrt(c^2 + 1), low part of asinh c, c", nearest=True)
