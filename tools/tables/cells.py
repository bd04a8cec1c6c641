"""Tables by cells of the arguments: 32 to each power of two, a row told by bits of the argument."""
import mpmath
from floats import emit


def emit_cells(entry, first, end, comment):
    """Prints the rows entry(c), c the middle of a cell between the powers `first` and `end` of two, at the place that the
    low six bits of the exponent field and the leading five of the fraction tell; entry(0) in front of the first."""
    rows = [(0, 0, 0, 0)] * 2048
    for exponent in range(first, end):
        for leading in range(32):
            c = mpmath.ldexp(1 + mpmath.mpf(2 * leading + 1) / 64, exponent)
            rows[(exponent + 1023) % 64 * 32 + leading] = entry(c)
    rows[(first - 1 + 1023) % 64 * 32 + 31] = entry(mpmath.mpf(0))
    emit(rows, comment)
