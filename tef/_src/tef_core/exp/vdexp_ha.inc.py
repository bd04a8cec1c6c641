"""2^(j/64), j = 0 .. 63, as a double and the remainder."""
import mpmath
from floats import emit, pair

emit([pair(mpmath.mpf(2) ** (mpmath.mpf(j) / 64)) for j in range(64)], "2^(j/64): high part, low part")
