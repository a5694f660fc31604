#!/bin/sh
# check_errors.sh EXPORTS DOCUMENT: the document names every exported function that has results. It leaves out the
# letter of a width and "Ex", and ends the common beginning of several names in three dots.
set -eu
# shellcheck disable=SC2016
awk '
  FNR == 1 { file++ }
  file == 1 {
    for (line = $0; match(line, /`[A-Za-z0-9]+(\.\.\.)?`/); line = substr(line, RSTART + RLENGTH)) {
      name = substr(line, RSTART + 1, RLENGTH - 2)
      if (sub(/\.\.\.$/, "", name)) beginnings[name]
      else names[name]
    }
    next
  }
  /^[A-Za-z0-9]+(\(|$)/ {
    sub(/\(.*/, "")
    functions++
    bare = $0
    sub(/[AW]$/, "", bare)
    plain = bare
    sub(/Ex$/, "", plain)
    found = $0 in names || bare in names || (bare "W") in names || plain in names
    for (beginning in beginnings) found = found || index(bare, beginning) == 1
    if (!found) {
      print $0 ": no row in the table of results"
      missing = 1
    }
  }
  END {
    print functions + 0 " functions"
    exit missing || !functions
  }' "$2" "$1"
