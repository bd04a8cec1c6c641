"""The inverse of the error function by rows, for its table scripts.

Of z = 1 - |c| or so, the part of the leading bits that tells the row: rows 8 to an octave. A row has the point that it expands
about, the value there, and the coefficients of a polynomial in the distance from it."""
import mpmath
from floats import rounded
from mpmath import mpf
from rows import LONG, coefficients, series_of_ode


def erfc_inverse(y):
    """x with erfc x = y, 0 < y <= 1, by Newton's method on the logarithm."""
    if y == 1:
        return mpf(0)
    goal = mpmath.log(y)
    x = mpmath.sqrt(-goal) if y < 0.5 else (1 - y) * mpf("0.9")
    for _ in range(60):
        e = mpmath.erfc(x)
        step = (mpmath.log(e) - goal) * e * mpmath.sqrt(mpmath.pi) / 2 * mpmath.exp(x * x)
        x += step
        if abs(step) < mpf(2) ** -150:
            break
    return x


def series_in_y(y0, terms):
    """erfc^-1(y0 - r) in powers of r: f' = sqrt(pi)/2 e^(f^2)."""
    g = []  # the series of e^(f^2): g' = 2 f f' g

    def slope(f, k):
        if k == 0:
            g.append(mpmath.exp(f[0] * f[0]))
        else:
            square = [mpmath.fsum(f[i] * f[j - i] for i in range(j + 1)) for j in range(k + 1)]
            g.append(mpmath.fsum((j * square[j]) * g[k - j] for j in range(1, k + 1)) / k)
        return mpmath.sqrt(mpmath.pi) / 2 * g[k]

    return series_of_ode(erfc_inverse(y0), slope, terms)


def series_in_log(L0, terms):
    """erfc^-1(e^-(L0 + r)) in powers of r: f' = sqrt(pi)/2 e^(f^2 - L)."""
    g = []

    def slope(f, k):
        if k == 0:
            g.append(mpmath.exp(f[0] * f[0] - L0))
        else:
            exponent = [mpmath.fsum(f[i] * f[j - i] for i in range(j + 1)) for j in range(k + 1)]
            exponent[1] -= 1
            g.append(mpmath.fsum((j * exponent[j]) * g[k - j] for j in range(1, k + 1)) / k)
        return mpmath.sqrt(mpmath.pi) / 2 * g[k]

    return series_of_ode(erfc_inverse(mpmath.exp(-L0)), slope, terms)


OCTAVES = 54  # the least y with a row is 2^-54


def rows_in_y(scale, slope, terms, low_part):
    """Rows for y from 2^-54 to 1/2, expanded about points -v, and for c = 1 - y from 0 to 1/2, about v, of which the first
    is 0; one more is the last one's copy, for c = 1/2 itself. `scale` times erfc^-1 is what they give."""
    points = []
    for e in range(-OCTAVES, -1):
        width = mpf(2) ** (e - 3)
        for i in range(8, 16):
            y0 = (i + mpf(1) / 2) * width
            points.append((-y0, y0, -width / 2, width / 2))
    for k in range(8):
        c0 = (k + mpf(1) / 2) / 16 if k else mpf(0)
        points.append((c0, 1 - c0, mpf(k) / 16 - c0, mpf(k + 1) / 16 - c0))
    points.append(points[-1])
    return [row(v, [scale * f for f in series_in_y(y0, LONG)], slope, low, high, terms, low_part)
            for v, y0, low, high in points]


def rows_in_log(scale, terms):
    """Rows for L = -ln y from 32 to 768."""
    points = []
    for e in range(5, 10):
        width = mpf(2) ** (e - 3)
        points += [((i + mpf(1) / 2) * width, width / 2) for i in range(8, 16 if e < 9 else 12)]
    return [row(L0, [scale * f for f in series_in_log(L0, LONG)], 0, -half, half, terms, True) for L0, half in points]


def row(v, series, slope, low, high, terms, low_part):
    value = rounded(series[0])
    head = [v, value, series[0] - value] if low_part else [v, value]
    return [rounded(x) for x in head + coefficients(series, slope, low, high, terms)]
