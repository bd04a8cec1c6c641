"""For each exponent field e of a single the 96 bits of 1/(2 pi) that its integer m meets, m 2^(e - 150) being the single.

Row e is the integer part of 2^(e - 54)/(2 pi), modulo 2^96: m times it, modulo 2^96, is the fraction of a turn in x/(2 pi), in
units of 2^-96 and too small by less than m of them. Words from the highest."""
import mpmath

mpmath.mp.prec = 400


def row(e):
    window = int(mpmath.floor(mpmath.ldexp(1 / (2 * mpmath.pi), e - 54))) % 2**96
    return ", ".join(f"0x{window >> shift & 2**32 - 1:08X}" for shift in (64, 32, 0))


print("// 1/(2 pi) from bit 54 - e on, modulo 2^96: a row for each exponent field")
for e in range(256):
    print("{" + row(e) + "},")
