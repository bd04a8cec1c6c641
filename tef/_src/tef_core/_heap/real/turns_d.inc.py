"""For each biased exponent e of a double the 192 bits of 1/(2 pi) that its integer significand m meets.

Row e is the integer part of 2^(e - 883)/(2 pi), modulo 2^192: m times it, modulo 2^192, is the fraction of a turn
in x/(2 pi), x = m 2^(e - 1075), in units of 2^-192, but for what lies below. Words from the highest."""
import mpmath

mpmath.mp.prec = 1400


def row(e):
    window = int(mpmath.floor(mpmath.ldexp(1 / (2 * mpmath.pi), e - 883))) % 2**192
    return ", ".join(f"0x{window >> shift & 2**64 - 1:016X}" for shift in (128, 64, 0))


print("// 1/(2 pi) from bit 883 - e on, modulo 2^192: a row for each exponent field")
for e in range(2048):
    print("{" + row(e) + "},")
