"""The first 318 irreducible polynomials over GF(2), in the order of their bit patterns, and their degrees."""


def remainder(a, b):
    while a.bit_length() >= b.bit_length():
        a ^= b << (a.bit_length() - b.bit_length())
    return a


found = []
candidate = 2
while len(found) < 318:
    if all(remainder(candidate, p) for p in found if 2 * p.bit_length() - 1 <= candidate.bit_length()):
        found.append(candidate)
    candidate += 1
assert found[:6] == [0x2, 0x3, 0x7, 0xB, 0xD, 0x13] and found[-1] == 0xBE7


def table(name, entries):
    print(f"extern const uint32_t {name}[318];\nconst uint32_t {name}[318] = {{")
    for i in range(0, 318, 12):
        print("    " + ", ".join(entries[i:i + 12]) + ",")
    print("};")


print("// Made by niederr.inc.py.")
table("uNiederrIrredPoly", [f"{p:#x}" for p in found])
table("iNiederrIrredPolyDeg", [str(p.bit_length() - 1) for p in found])
