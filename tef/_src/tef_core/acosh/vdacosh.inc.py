"""For the cells of [2^-13, 2^27), 32 to each power of two, with the middle w: acosh c, sqrt(c^2 - 1), what acosh c lacks,
where c = 1 + w. A cell's row is told by the low six bits of w's exponent field and the leading five of its fraction. The row
in front of the first, for arguments below, has w = 0."""
import mpmath
from cells import emit_cells
from floats import rounded


def entry(w):
    value = mpmath.acosh(1 + w)
    return rounded(value), rounded(mpmath.sqrt(w * (w + 2))), rounded(value - rounded(value)), 0


emit_cells(entry, -13, 27, "acosh c, sqrt(c^2 - 1), low part of acosh c")
