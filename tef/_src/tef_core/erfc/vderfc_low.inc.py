"""For a = j/128, j = 0 .. 3487: what the double next to erfc a lacks; from a = 24 on 2^300 times as large."""
import mpmath
from floats import emit, pair

emit([pair(mpmath.mpf(2) ** (300 if j >= 24 * 128 else 0) * mpmath.erfc(mpmath.mpf(j) / 128))[1:] for j in range(3488)],
     "erfc a less its double; a = j/128")
