"""1/(1 + (i + 1/2)/256) in 11 bits: short, so that the product with a double is exact in 64 bits."""
import mpmath
from floats import truncated

RECIPROCALS = [mpmath.mpf(truncated(1 / (1 + (i + mpmath.mpf(1) / 2) / 256), -11)) for i in range(256)]
