"""The binary digits of 1/(2 pi) behind 64 zeros, 32 to a word: as many as the largest extended number meets, and 288 more."""
import mpmath

mpmath.mp.prec = 18000
ZEROS, DIGITS = 64, 16384 + 288 - 64

print(f"// {ZEROS} zeros, and the first {DIGITS} digits of 1/(2 pi)")
digits = int(mpmath.floor(mpmath.ldexp(1 / (2 * mpmath.pi), DIGITS)))
words = [digits >> shift & 2**32 - 1 for shift in range(DIGITS + ZEROS - 32, -1, -32)]
for i in range(0, len(words), 8):
    print("".join(f"0x{word:08X}, " for word in words[i : i + 8]).rstrip())
