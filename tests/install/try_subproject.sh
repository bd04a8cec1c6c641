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
  -DCMAKE_CXX_FLAGS="${flags[*]} -DOF_THE_USER" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE=-O2 \
  -DCMAKE_EXPORT_COMPILE_COMMANDS=ON > /dev/null

# The targets of the layers and the two libraries, and of those that the project itself has; none of ours beside.
targets=$(make -C "$work" help | sed -n 's/^\.\.\. \(orx_[a-z0-9_]*\|test_.*\|bench_.*\|raw_words\)$/\1/p' | sort | xargs)
expected="orx_df orx_distributions orx_g9 orx_primitives orx_serv orx_statistics orx_streams orx_tef"
[[ $targets == "$expected" ]] || { echo "targets: $targets"; exit 1; }
"$cmake" --install "$work" --prefix "$work/prefix" > /dev/null
[[ -z $(find "$work/prefix" -type f 2> /dev/null) ]] || { echo "it installs"; exit 1; }

ours=$(grep -c '"command".*-c ' "$work/compile_commands.json")
held=$(grep '"command"' "$work/compile_commands.json" | grep -- ' -DOF_THE_USER ' | grep -- ' -O2 ' | grep -vc -- ' -O3 ')
[[ $ours -gt 0 && $held == "$ours" ]] || { echo "the user's flags hold in $held of $ours files"; exit 1; }

# One file through the compiler as the whole: the flags are such that it takes them.
"$cmake" --build "$work" --target orx_primitives > /dev/null
