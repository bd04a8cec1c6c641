"""atan(j/128) in two parts."""
import mpmath
from floats import emit, pair

emit([pair(mpmath.atan(mpmath.mpf(j) / 128)) for j in range(129)], "atan(j/128): high part, low part")
