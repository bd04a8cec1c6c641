"""2^(j/1024) (1 + B), j = 0 .. 1023. B is the constant part of the polynomial's best fit, small enough for entry 0 to
remain 1."""
import mpmath
from floats import rounded

B = mpmath.mpf("-5e-17")
print("// 2^(j/1024) (1 - 5e-17)")
for j in range(1024):
    print(f"{rounded(mpmath.mpf(2) ** (mpmath.mpf(j) / 1024) * (1 + B)).hex()},")
