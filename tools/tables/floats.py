"""Correctly rounded floating-point constants for the table scripts (mpmath)."""
import mpmath

mpmath.mp.prec = 400


def rounded(x, bits=53):
    """x rounded to nearest with `bits` significant bits, as a Python float."""
    with mpmath.workprec(bits):
        return float(+mpmath.mpf(x))


def truncated(x, unit_exponent):
    """x rounded to nearest to a multiple of 2**unit_exponent, as a Python float."""
    return float(mpmath.ldexp(mpmath.nint(mpmath.ldexp(mpmath.mpf(x), -unit_exponent)), unit_exponent))


def pair(x, bits=53):
    """x as the sum of a float and a remainder, both of `bits` bits."""
    hi = rounded(x, bits)
    return hi, rounded(mpmath.mpf(x) - hi, bits)


def literal(x, suffix=""):
    return float(x).hex() + suffix


def emit(rows, comment, suffix=""):
    """Prints the rows of a table as C initialisers."""
    print("// " + comment)
    for row in rows:
        print("{" + ", ".join(literal(x, suffix) for x in row) + "}," if len(row) > 1 else literal(row[0], suffix) + ",")
