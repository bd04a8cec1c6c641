#!/usr/bin/env python3
"""Every piece of C in docs/data-fitting.md compiles, and its first program prints what stands below it.

guide_examples.py GUIDE COMPILER FLAGS...: the flags find the headers and link the libraries.
"""
import pathlib
import re
import subprocess
import sys
import tempfile

# What the pieces below the first program take for granted.
FRAME = """#include <orx/df.h>
enum {{ nx = 20, n = 7 }};
void piece(DFTask* task, DFTask* primitive, double* x, double (*table)[3], double* values, double* slopes, double* sites,
           double* quartic, double* all_coeffs, double* results) {{
{names}
{piece}
}}
"""


def main(guide, compiler, *flags):
    text = pathlib.Path(guide).read_text()
    program, *pieces = re.findall(r"```c\n(.*?)```", text, re.S)
    expected = re.search(r"```\n\$ gcc[^\n]*\n(.*?)```", text, re.S).group(1)
    with tempfile.TemporaryDirectory() as directory:
        source, binary = f"{directory}/example.c", f"{directory}/example"

        def compile_with(code, *more):
            pathlib.Path(source).write_text(code)
            subprocess.run([compiler, "-std=c11", "-Wall", "-Werror", "-Wno-unused", source, *more], check=True)

        compile_with(program, "-o", binary, *flags)
        printed = subprocess.run([binary], check=True, capture_output=True, text=True).stdout
        if printed != expected:
            sys.exit(f"the first program prints\n{printed}and not\n{expected}")
        for piece in pieces:
            names = "  double (*y)[3] = table;\n" if "y[0][0]" in piece else "  double *y = values;\n"
            for name, stands_for in (("coeffs", "all_coeffs"), ("result", "results")):
                if not re.search(rf"double .*\b{name}\[", piece):
                    names += f"  double* {name} = {stands_for};\n"
            compile_with(FRAME.format(names=names, piece=piece), "-fsyntax-only", *[f for f in flags if f[:2] == "-I"])
    if len(pieces) < 6:
        sys.exit(f"{len(pieces)} pieces where the guide had six")


main(*sys.argv[1:])
