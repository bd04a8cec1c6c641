"""erfinv(x) / x on (-1, 1), as polynomials by Chebyshev interpolation of mpmath's erfinv.

In w = -ln(1 - x^2) for w <= 6.25, about its middle; in s = sqrt(w) beyond, up to w = 40. The form is that of M. Giles,
Approximating the erfinv function, GPU Computing Gems 2, Morgan Kaufmann 2011; the coefficients are of our own.
"""
import mpmath
from floats import literal, rounded

mpmath.mp.dps = 60


def quotient(w):
    x = mpmath.sqrt(-mpmath.expm1(-w))
    if w == 0:
        return mpmath.sqrt(mpmath.pi) / 2
    # From the complement, which keeps its digits as x nears 1.
    y = mpmath.findroot(lambda v: mpmath.log(mpmath.erfc(v)) - mpmath.log(-mpmath.expm1(mpmath.log1p(-mpmath.exp(-w)) / 2)),
                        mpmath.sqrt(w) if w > 1 else mpmath.sqrt(w) * 0.9)
    return y / x


def fitted(f, low, high, degree):
    """Coefficients in t = argument - (low + high) / 2, lowest first, and the largest relative error."""
    middle, half = (low + high) / 2, (high - low) / 2
    nodes = [mpmath.cos(mpmath.pi * (2 * k + 1) / (2 * degree + 2)) * half for k in range(degree + 1)]
    rows = mpmath.matrix(degree + 1, degree + 1)
    right = mpmath.matrix(degree + 1, 1)
    for i, t in enumerate(nodes):
        value = f(middle + t)
        for j in range(degree + 1):
            rows[i, j] = t**j / value  # relative errors alike
        right[i] = 1
    solution = mpmath.lu_solve(rows, right)
    c = [rounded(solution[j]) for j in range(degree + 1)]
    error = 0
    for k in range(201):
        t = half * (mpmath.mpf(k) / 100 - 1)
        exact = f(middle + t)
        error = max(error, abs(mpmath.polyval(c[::-1], t) / exact - 1))
    return c, error


def show(name, kind, f, low, high, degree):
    c, error = fitted(f, mpmath.mpf(low), mpmath.mpf(high), degree)
    suffix = "f" if kind == "float" else ""
    print(f"// Relative error below {mpmath.nstr(error, 2)}.")
    print(f"constexpr {kind} {name}[] = {{" + ", ".join(literal(rounded(x, 24 if suffix else 53), suffix) for x in c) + "};")


show("kCentreDouble", "double", quotient, 0, 6.25, 12)
show("kTailDouble", "double", lambda s: quotient(s * s), 2.5, 6.25, 14)
show("kCentreSingle", "float", quotient, 0, 6.25, 6)
show("kTailSingle", "float", lambda s: quotient(s * s), 2.5, 6.25, 5)
