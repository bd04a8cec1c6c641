"""Tables by cells of the arguments: 32 to each power of two, a row told by bits of the argument."""
import mpmath
from floats import emit


def emit_cells(entry, first, end, comment, nearest=False):
    """Prints the rows entry(c), c the middle of a cell between the powers `first` and `end` of two, at the place that the
    low six bits of the exponent field and the leading five of the fraction tell; entry(0) in front of the first. A cell
    begins at the number that its bits tell, or with `nearest` holds what is rounded to that number, up to 2^end."""
    cells = [(exponent, leading) for exponent in range(first, end) for leading in range(32)]
    if nearest:
        cells.append((end, 0))
    none = entry(mpmath.mpf(0))
    rows = [(0,) * len(none)] * 2048
    rows[(first - 1 + 1023) % 64 * 32 + 31] = none
    for exponent, leading in cells:
        middle = leading if nearest else leading + mpmath.mpf(0.5)
        rows[(exponent + 1023) % 64 * 32 + leading] = entry(mpmath.ldexp(1 + middle / mpmath.mpf(32), exponent))
    emit(rows, comment)
