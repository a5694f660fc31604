#!/bin/sh
# check_links.sh DOCUMENT...: every relative link of the documents leads to a file or folder.
set -eu
links=0
broken=0
for document in "$@"; do
  # Links to the web and to the same page are not looked at.
  # shellcheck disable=SC2013  # links have no blanks
  for target in $(grep -oE '\]\([^)#:]+[)#]' "$document" | sed 's/^](//; s/[)#]$//'); do
    links=$((links + 1))
    if [ ! -e "$(dirname "$document")/$target" ]; then
      echo "$document: $target is not there"
      broken=1
    fi
  done
done
echo "$links links"
[ "$broken" -eq 0 ] && [ "$links" -ne 0 ]
