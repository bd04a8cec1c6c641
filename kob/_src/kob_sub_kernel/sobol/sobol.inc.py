"""Primitive polynomials and initial direction numbers of Sobol's sequence in dimensions 2 to 40.

The choice is that of P. Bratley and B. L. Fox, Algorithm 659: implementing Sobol's quasirandom sequence
generator, ACM Trans. Math. Softw. 14 (1988), after I. M. Sobol. Checked here: that each polynomial is
primitive, none comes twice, and initial number j is odd and below 2^(j+1). Each row's numbers are carried on by
the recursion to the 8 that the table holds, for polynomials of a user's of a higher degree.
"""

ROWS = [
    (0x3, [1]), (0x7, [1, 1]), (0xB, [1, 3, 7]), (0xD, [1, 1, 5]), (0x13, [1, 3, 1, 1]), (0x19, [1, 1, 3, 7]),
    (0x25, [1, 3, 3, 9, 9]), (0x3B, [1, 3, 7, 13, 3]), (0x2F, [1, 1, 5, 11, 27]), (0x3D, [1, 3, 5, 1, 15]),
    (0x37, [1, 1, 7, 3, 29]), (0x29, [1, 3, 7, 7, 21]), (0x43, [1, 1, 1, 9, 23, 37]),
    (0x61, [1, 3, 3, 5, 19, 33]), (0x5B, [1, 1, 3, 13, 11, 7]), (0x6D, [1, 1, 7, 13, 25, 5]),
    (0x67, [1, 3, 5, 11, 7, 11]), (0x73, [1, 1, 1, 3, 13, 39]), (0x83, [1, 3, 1, 15, 17, 63, 13]),
    (0xC1, [1, 1, 5, 5, 1, 27, 33]), (0x89, [1, 3, 3, 3, 25, 17, 115]), (0x91, [1, 1, 3, 15, 29, 15, 41]),
    (0x8F, [1, 3, 1, 7, 3, 23, 79]), (0xF1, [1, 3, 7, 9, 31, 29, 17]), (0x9D, [1, 1, 5, 13, 11, 3, 29]),
    (0xB9, [1, 3, 1, 9, 5, 21, 119]), (0xA7, [1, 1, 3, 1, 23, 13, 75]), (0xE5, [1, 3, 3, 11, 27, 31, 73]),
    (0xAB, [1, 1, 7, 7, 19, 25, 105]), (0xD5, [1, 3, 5, 5, 21, 9, 7]), (0xBF, [1, 1, 1, 15, 5, 49, 59]),
    (0xFD, [1, 1, 1, 1, 1, 33, 65]), (0xCB, [1, 3, 5, 15, 17, 19, 21]), (0xD3, [1, 1, 7, 11, 13, 29, 3]),
    (0xEF, [1, 3, 7, 5, 7, 11, 113]), (0xF7, [1, 1, 5, 3, 15, 19, 61]), (0x11D, [1, 3, 1, 1, 9, 27, 89, 7]),
    (0x171, [1, 1, 3, 7, 31, 15, 45, 23]), (0x12B, [1, 3, 3, 9, 9, 25, 107, 39]),
]


def order_of_x(p):
    e, power, n = p.bit_length() - 1, 1, 0
    while n == 0 or power != 1:
        power <<= 1
        if power >> e:
            power ^= p
        n += 1
        if n > 2**e:
            return 0
    return n


def carried_on(p, m):
    e, m = p.bit_length() - 1, list(m)
    while len(m) < 8:
        j = len(m)
        new = m[j - e] ^ m[j - e] << e
        for i in range(1, e):
            if p >> i & 1:
                new ^= m[j - e + i] << (e - i)
        m.append(new)
    return m


assert len({p for p, _ in ROWS}) == len(ROWS) == 39
for p, m in ROWS:
    e = p.bit_length() - 1
    assert order_of_x(p) == 2**e - 1 and len(m) == e
    assert all(x % 2 == 1 and x < 2 ** (j + 1) for j, x in enumerate(m))

print("// Made by sobol.inc.py.")
print("extern const uint32_t uSobolIrredPoly[39], iSobolIrredPolyDeg[39], uSobolMInit[39][8];")
print("const uint32_t uSobolIrredPoly[39] = {")
print("    " + ", ".join(f"{p:#x}" for p, _ in ROWS) + "};")
print("const uint32_t iSobolIrredPolyDeg[39] = {")
print("    " + ", ".join(str(p.bit_length() - 1) for p, _ in ROWS) + "};")
print("const uint32_t uSobolMInit[39][8] = {")
for p, m in ROWS:
    print("    {" + ", ".join(map(str, carried_on(p, m))) + "},")
print("};")
