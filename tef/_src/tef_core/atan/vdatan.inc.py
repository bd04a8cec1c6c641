"""The angles that t is added to or subtracted from: of the point (16, j), j = 0 .. 16, and of its images in the octants
around the y axis and behind it, up to pi. Each as a double and what it lacks."""
import mpmath
from floats import emit, pair

turn = mpmath.pi / 2
for name, sign, base in (("atan(j/16)", 1, 0), ("pi/2 - atan(j/16)", -1, turn), ("pi - atan(j/16)", -1, 2 * turn),
                         ("pi/2 + atan(j/16)", 1, turn)):
    emit([pair(base + sign * mpmath.atan(mpmath.mpf(j) / 16)) for j in range(17)], name + ": high, low part")
