"""2^(j/1024) / a0, j = 0 .. 1023, a0 being the constant coefficient of the polynomial that the entry is multiplied
by, so that their product is 2^(j/1024); each entry rounded once."""
import mpmath
from floats import emit, rounded

A0 = mpmath.mpf(float.fromhex("0x1.7fffffe3ca7b0p+2"))
emit([[rounded(mpmath.mpf(2) ** (mpmath.mpf(j) / 1024) / A0)] for j in range(1024)], "2^(j/1024) / a0")
