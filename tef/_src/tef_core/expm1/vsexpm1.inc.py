"""2^(j/4), j = 0 .. 3: the leading 12 bits, then the rest as a fraction of them; each twice, to fill a vector."""
import mpmath
from floats import literal, rounded

powers = [mpmath.mpf(2) ** (mpmath.mpf(j) / 4) for j in range(4)] * 2
high = [rounded(p, 12) for p in powers]
rest = [rounded((p - h) / h, 24) for p, h in zip(powers, high)]
print("// 2^(j/4): leading 12 bits, relative rest")
for part in high, rest:
    print("{" + ", ".join(literal(x, "f") for x in part) + "},")
