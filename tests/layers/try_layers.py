"""try_layers.py SOURCES BUILD: every object of a layer is made of files that the layer may see, and of no others.

Reads the dependency files that the compiler left in BUILD. The include paths keep layers apart, too, but do not see
an include that climbs, or a path that was widened.
"""
import pathlib
import re
import sys

STREAMS = "kob/_src/kob_sub_kernel"
KERNELS = "kob/_src/kob_kernel"
MAY_SEE = {  # beside the public headers and the ground floor
    "orx_serv": ["serv"],
    "orx_primitives": ["primitives"],
    "orx_tef": ["tef"],
    "orx_streams": [STREAMS],
    "orx_distributions": [f"{KERNELS}/_distribution", f"{KERNELS}/continuous", f"{KERNELS}/discrete", STREAMS],
    "orx_statistics": [f"{KERNELS}/_service", f"{KERNELS}/ss", STREAMS],
    "orx_df": ["df"],
}

sources, build = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
seen = dict.fromkeys(MAY_SEE, 0)
faults = set()
for dependencies in build.glob("*/CMakeFiles/*.dir/**/*.o.d"):
    layer = next((name for name in MAY_SEE if f"{name}.dir" in dependencies.parts), None)
    if layer is None:
        continue
    seen[layer] += 1
    for word in re.split(r"[\s\\]+", dependencies.read_text().split(":", 1)[1].strip()):
        file = (build / dependencies.relative_to(build).parts[0] / word).resolve()
        if not file.exists() or build in file.parents or sources not in file.parents:
            continue  # renamed since; generated; the system's
        path = file.relative_to(sources).as_posix()
        if not path.startswith(tuple(room + "/" for room in ["include", "base", *MAY_SEE[layer]])):
            faults.add(f"{layer} sees {path}")

if not any(seen.values()):
    print("no dependency files: this generator does not keep them")
    sys.exit(77)
faults |= {f"no object of {layer}" for layer, objects in seen.items() if not objects}
print("\n".join(sorted(faults)) or f"{sum(seen.values())} objects")
sys.exit(bool(faults))
