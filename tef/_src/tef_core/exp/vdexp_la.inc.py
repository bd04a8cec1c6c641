"""The bits of 2^(j/1024) (1 + B) less j 2^42, j = 0 .. 1023. B is the constant part of the polynomial's best fit, small
enough for entry 0 to remain 1. Adding (1024 k + j) 2^42 gives the bits of 2^k 2^(j/1024)."""
import struct

import mpmath
from floats import rounded

B = mpmath.mpf("-5e-17")
print("// bits of 2^(j/1024) (1 - 5e-17), less j << 42")
for j in range(1024):
    power = rounded(mpmath.mpf(2) ** (mpmath.mpf(j) / 1024) * (1 + B))
    (bits,) = struct.unpack("<Q", struct.pack("<d", power))
    print(f"{bits - (j << 42):#018x},")
