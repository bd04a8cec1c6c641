"""T = 2^(j/128), j = 0 .. 127: T/2, 1/(4 T), and what each lacks as a fraction of it."""
import mpmath
from floats import emit, rounded


def entry(j):
    power = mpmath.mpf(2) ** (mpmath.mpf(j) / 128)
    values = power / 2, 1 / (4 * power)
    return tuple(map(rounded, values)) + tuple(rounded((v - rounded(v)) / rounded(v)) for v in values)


emit([entry(j) for j in range(128)], "T/2, 1/(4 T), relative rests; T = 2^(j/128)")
