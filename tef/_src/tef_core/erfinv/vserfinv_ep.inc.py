"""erfinv(x) / x for |x| < 1 as a polynomial in s - 2, s = sqrt(-ln(1 - x^2)), 0 <= s <= 4, by interpolation at the points of
Chebyshev. That erfinv is nearly s itself where x is near 1: M. Giles, Approximating the erfinv function, GPU Computing Gems 2,
Morgan Kaufmann 2011. The coefficients are of our own."""
import mpmath
from floats import literal, rounded
from inverse_erf import erfc_inverse
from mpmath import mpf

mpmath.mp.prec = 160
DEGREE, MIDDLE = 11, mpf(2)


def quotient(s):
    if s == 0:
        return mpmath.sqrt(mpmath.pi) / 2
    y = -mpmath.expm1(mpmath.log1p(-mpmath.exp(-s * s)) / 2)  # 1 - x
    return erfc_inverse(y) / (1 - y)


def interpolating_polynomial():
    nodes = [MIDDLE * mpmath.cos(mpmath.pi * (2 * k + 1) / (2 * DEGREE + 2)) for k in range(DEGREE + 1)]
    matrix, right = mpmath.matrix(DEGREE + 1, DEGREE + 1), mpmath.matrix(DEGREE + 1, 1)
    for i, t in enumerate(nodes):
        right[i] = quotient(MIDDLE + t)
        for j in range(DEGREE + 1):
            matrix[i, j] = t**j
    return [mpf(rounded(c, 24)) for c in mpmath.lu_solve(matrix, right)]


c = interpolating_polynomial()
points = [MIDDLE * mpf(k) / 100 for k in range(-100, 101)]
error = max(abs(mpmath.polyval(c[::-1], t) / quotient(MIDDLE + t) - 1) for t in points)
print("// to 2^%.1f of erfinv x" % mpmath.log(error, 2))
for k in range(0, len(c), 4):
    print(", ".join(literal(x, "f") for x in c[k:k + 4]) + ",")
