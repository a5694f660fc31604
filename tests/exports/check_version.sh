#!/bin/sh
# check_version.sh OBJCOPY VERSION DLL...: fails unless each DLL carries a version resource with its name and VERSION.
set -eu
export LC_ALL=C
objcopy=$1 version=$2
shift 2

section=$(mktemp)
trap 'rm -f "$section"' EXIT
for library in "$@"; do
  "$objcopy" -O binary --only-section=.rsrc "$library" "$section"
  # The texts are UTF-16, each followed by a terminator and padding.
  texts=$(tr -d '\000' <"$section")
  for text in "OriginalFilename$(basename "$library")" "FileVersion$version" "ProductVersion$version" FileDescription; do
    case $texts in
      *"$text"*) ;;
      *)
        echo "$library: the version resource has no $text"
        exit 1
        ;;
    esac
  done
done
