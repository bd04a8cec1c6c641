"""-ln of the reciprocals of rcp.inc.py: what it lacks, and itself cut to the high word of a double, which is exact with
multiples of ln 2 besides."""
import struct

import mpmath
from floats import emit, rounded
from reciprocals import RECIPROCALS


def high_word(x):
    return struct.unpack("<d", struct.pack("<Q", struct.unpack("<Q", struct.pack("<d", x))[0] >> 32 << 32))[0]


def row(r):
    value = -mpmath.log(r)
    high = high_word(float(value))
    return rounded(value - high), high


emit([row(r) for r in RECIPROCALS], "-ln r: low part, high part; r = 1/(1 + (i + 1/2)/256) in 11 bits")
