#!/bin/sh
# keeps_to_sse3.sh PATTERN OBJECT...: object files whose names match the pattern hold no AVX instruction, nor call
# a function of the others.
set -eu
pattern=$1
shift
older=$(printf '%s\n' "$@" | grep -E "$pattern")
others=$(printf '%s\n' "$@" | grep -vE "$pattern")
functions=$(nm --defined-only $others | awk '$2 ~ /^[TWV]$/ {print $3}' | sort -u)
status=0

for object in $older; do
  if objdump -d --no-show-raw-insn "$object" | grep -m 1 -P '^\s+[0-9a-f]+:\s+v'; then
    echo "AVX in $object"
    status=1
  fi
  needed=$(nm -u "$object" | awk '{print $2}' | grep -Fx -e "$functions" || true)
  if [ -n "$needed" ]; then
    echo "$object needs, of what is compiled for AVX:" $needed
    status=1
  fi
done
[ -n "$older" ] && [ -n "$others" ] && exit $status
