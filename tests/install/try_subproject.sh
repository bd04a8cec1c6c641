#!/usr/bin/env bash
# try_subproject.sh SOURCE BUILD CMAKE CXX [FLAGS...]
# Makes SOURCE a part of another project: the libraries are all that it adds, and the project's flags hold in it.
set -euo pipefail
source=$1 build=$2 cmake=$3 cxx=$4
flags=("${@:5}")
here=$(cd "$(dirname "$0")" && pwd)

work=$build/tests/subproject-try
rm -rf "$work"
"$cmake" -S "$here/subproject" -B "$work" -G "Unix Makefiles" -DORX_SOURCE="$source" -DCMAKE_CXX_COMPILER="$cxx" \
  -DCMAKE_C_FLAGS="${flags[*]}" -DCMAKE_CXX_FLAGS="${flags[*]} -DOF_THE_USER" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_CXX_FLAGS_RELEASE=-O2 -DCMAKE_EXPORT_COMPILE_COMMANDS=ON > /dev/null

# Of all that we can build nothing stands there but the two libraries and their layers.
beside=$(make -C "$work" help | sed -n 's/^\.\.\. \(orx_[a-z0-9_]*\|test_.*\|bench_.*\|raw_words\)$/\1/p' |
  grep -vxE 'orx_(g9|serv|primitives|tef|streams|distributions|statistics|df)' || true)
[[ -z $beside ]] || { echo "it also builds: "$beside; exit 1; }
"$cmake" --install "$work" --prefix "$work/prefix" > /dev/null
[[ -z $(find "$work/prefix" -type f 2> /dev/null) ]] || { echo "it installs"; exit 1; }

ours=$(grep -c '"command".*-c ' "$work/compile_commands.json")
held=$(grep '"command"' "$work/compile_commands.json" | grep -- ' -DOF_THE_USER ' | grep -- ' -O2 ' | grep -vc -- ' -O3 ')
[[ $ours -gt 0 && $held == "$ours" ]] || { echo "the user's flags hold in $held of $ours files"; exit 1; }

# One file through the compiler as the whole: the flags are such that it takes them.
"$cmake" --build "$work" --target orx_primitives > /dev/null
