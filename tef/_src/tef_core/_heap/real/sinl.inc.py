"""Sine and cosine of j/32 in two parts each: a double and a remainder."""
import mpmath
from floats import emit, pair

emit([pair(mpmath.sin(mpmath.mpf(j) / 32)) + pair(mpmath.cos(mpmath.mpf(j) / 32)) for j in range(27)],
     "sin(j/32): high part, low part; cos(j/32): high part, low part")
