"""Tables of those binary digits of 1/(2 pi) that reductions of large arguments need."""
import mpmath

mpmath.mp.prec = 1400


def emit_turns(fields, first, word):
    """Prints a row of three words, from the highest, for each exponent field e: the integer part of 2^(e - first)/(2 pi),
    modulo 2^(3 word)."""
    bits = 3 * word
    print(f"// 1/(2 pi) from bit {first} - e on, modulo 2^{bits}: a row for each exponent field")
    for e in range(fields):
        window = int(mpmath.floor(mpmath.ldexp(1 / (2 * mpmath.pi), e - first))) % 2**bits
        words = (window >> shift & 2**word - 1 for shift in (2 * word, word, 0))
        print("{" + ", ".join(f"0x{w:0{word // 4}X}" for w in words) + "},")
