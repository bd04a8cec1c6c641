"""Tables of powers with exponents p/3, tef/_src/tef_core/cbrt/thirds.hpp."""
import mpmath
from floats import emit, rounded


def middle(interval):
    """Of the interval, one of 32, of the mantissa: 1 + (interval + 1/2)/32."""
    return 1 + mpmath.mpf(2 * interval + 1) / 64


def emit_powers(p):
    """(2^s c)^(p/3), a double and what it lacks, by 32 s + interval."""

    def entry(s, interval):
        power = mpmath.root((2**s * middle(interval)) ** abs(p), 3)
        if p < 0:
            power = 1 / power
        return rounded(power), rounded(power - rounded(power))

    rows = [entry(s, interval) for s in range(3) for interval in range(32)]
    emit(rows, f"(2^s c)^({p}/3): high part, low part")
