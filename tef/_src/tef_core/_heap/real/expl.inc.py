"""2^(i/256) in two parts, the first of 32 bits."""
import mpmath
from floats import emit, rounded, truncated

values = [mpmath.mpf(2) ** (mpmath.mpf(i) / 256) for i in range(257)]
highs = [truncated(v, -31) for v in values]
emit([(h, rounded(v - h)) for v, h in zip(values, highs)], "2^(i/256): high part, low part")
