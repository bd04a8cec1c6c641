#!/usr/bin/env bash
# try_install.sh BUILD LIBDIR CMAKE CC CXX [FLAGS...]
# Installs BUILD, moves the installed tree, and uses it there as others would: every header by itself, a C program
# by pkg-config and a C++ program by find_package.
set -euo pipefail
build=$1 libdir=$2 cmake=$3 cc=$4 cxx=$5
flags=("${@:6}")
here=$(cd "$(dirname "$0")" && pwd)

work=$build/tests/install-try
rm -rf "$work"
"$cmake" --install "$build" --prefix "$work/first" > /dev/null
mv "$work/first" "$work/prefix"
prefix=$work/prefix

if grep -rIl -e "$build" -e "$work" "$prefix"; then
  echo "the files above hold paths of the build tree" >&2
  exit 1
fi

for header in "$prefix"/include/orx/*.h; do
  for language in "c -std=c99" "c++ -std=c++17"; do
    # shellcheck disable=SC2086
    printf '#include <orx/%s>\nextern int not_empty;\n' "$(basename "$header")" |  # some headers hold macros alone
      "$cc" "${flags[@]}" -x $language -Wall -Wextra -pedantic -Werror -fsyntax-only -I "$prefix/include" -
  done
done

export LD_LIBRARY_PATH=$prefix/$libdir

export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
# shellcheck disable=SC2046
"$cc" "${flags[@]}" -std=c99 -Wall -Werror "$here/pkg_config.c" $(pkg-config --cflags --libs orx-g9) \
  -o "$work/pkg_config"
"$work/pkg_config"

"$cmake" -S "$here/find_package" -B "$work/find_package" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS="${flags[*]}" > /dev/null
"$cmake" --build "$work/find_package" > /dev/null
"$work/find_package/try"
