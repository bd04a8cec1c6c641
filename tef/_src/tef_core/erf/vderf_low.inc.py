"""For a = j/128, j = 0 .. 767: what the double next to erf a lacks."""
import mpmath
from floats import emit, pair

emit([pair(mpmath.erf(mpmath.mpf(j) / 128))[1:] for j in range(768)], "erf a less its double; a = j/128")
