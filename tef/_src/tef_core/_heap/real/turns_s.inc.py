"""For each exponent field e of a single m 2^(e - 150) the bits of 1/pi that its integer m meets, as two doubles. A row's number is
the exponent field of the single as a double, modulo 256.

Those that make whole turns, even numbers, of every m are left out. The first double is a multiple of 2^(122 - e), 29 bits below
them; the other is what it lacks."""
import mpmath
from floats import emit, rounded

mpmath.mp.prec = 600


def entry(e):
    digits = mpmath.frac(mpmath.ldexp(1 / mpmath.pi, e - 151))
    first = mpmath.ldexp(mpmath.nint(mpmath.ldexp(digits, 29)), -29)
    return tuple(rounded(mpmath.ldexp(part, 151 - e)) for part in (first, digits - first))


emit([entry((row + 127 - 1023) % 256) for row in range(256)], "1/pi from 2^(150 - e) on: 29 bits, those behind; a row for each exponent field e of a single")
