"""2^(j/4), j = 0 .. 3: the leading 12 bits, then the rest as a fraction of them; rounded, then what that lacks as a
fraction of it. Each twice, to fill a vector."""
import mpmath
from floats import literal, rounded

powers = [mpmath.mpf(2) ** (mpmath.mpf(j) / 4) for j in range(4)] * 2
print("// 2^(j/4): leading 12 bits, relative rest; rounded, relative rest")
for bits in 12, 24:
    high = [rounded(p, bits) for p in powers]
    rest = [rounded((p - h) / h, 24) for p, h in zip(powers, high)]
    for part in high, rest:
        print("{" + ", ".join(literal(x, "f") for x in part) + "},")
