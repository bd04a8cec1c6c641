#!/usr/bin/env bash
# try_exports.sh LIBRARY LISTS
# LISTS.exports: names that callers link to; one that is missing from the library is a fault, a new one is told of,
# and belongs into the list with the change that brings it.  LISTS.imports: extended regular expressions; a name that
# the library wants from others and that none of them matches whole is a fault.
set -euo pipefail
library=$1 lists=$2
export LC_ALL=C

names() { nm --dynamic "$@" "$library" | awk '{ sub(/@.*/, "", $NF); print $NF }' | sort -u; }

# What stands in the first and not in the second, under a heading; false where there is any.
only_in_first() {
  local names
  names=$(comm -23 "$1" "$2")
  [[ -z $names ]] || { printf '%s:\n%s\n' "$3" "$names"; return 1; }
}

only_in_first <(names --defined-only) <(sort "$lists.exports") "not in $(basename "$lists").exports yet" || true

status=0
only_in_first <(sort "$lists.exports") <(names --defined-only) "no longer exported" || status=1
only_in_first <(names --undefined-only) <(names --undefined-only | grep -xEf <(grep -v '^#' "$lists.imports")) \
  "imports that are not allowed" || status=1
exit $status
