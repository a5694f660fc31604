#!/usr/bin/env bash
# Installs what building and testing need and this machine lacks, from Debian packages. Silent if all is there.
#
#   setup.sh            everything for both targets
#   setup.sh --native   without the cross compiler and Wine
#   setup.sh --dev      in addition the tools of the fuzzers, the linters, coverage and the reference
#   setup.sh --x86      in addition the compiler for 32-bit Windows programs, and Wine for them where the machine takes
#                       i386 packages (dpkg --add-architecture i386)
#
# Needs root only if something is missing. Where the Windows packages can't be installed, this says so and succeeds,
# since the native target works without them; with CI set it fails.
set -euo pipefail

native=(build-essential cmake file ninja-build pkgconf python3 tzdata libgtest-dev googletest libbenchmark-dev
  libspdlog-dev libhowardhinnant-date-dev libcli11-dev nlohmann-json3-dev)
windows=(g++-mingw-w64-x86-64-posix wine64 wine)
sample=(wixl)  # builds the sample installer; its test is skipped without
dev=(clang clang-format clang-tidy shellcheck gcovr libclang-rt-14-dev doxygen)
x86=()

for argument in "$@"; do
  case $argument in
    --native) windows=() sample=() ;;
    --dev) native+=("${dev[@]}") ;;
    --x86)
      x86=(g++-mingw-w64-i686-posix)
      if dpkg --print-foreign-architectures 2>/dev/null | grep -qx i386; then
        x86+=(wine32)
      fi
      ;;
    *)
      echo "usage: setup.sh [--native] [--dev] [--x86]" >&2
      exit 2
      ;;
  esac
done

if ! command -v dpkg-query >/dev/null; then
  echo "setup: this is no Debian system. Needed are the equivalents of: ${native[*]} ${windows[*]}" >&2
  exit 1
fi

declare -A installed=()
while read -r package status; do
  if [[ $status == installed ]]; then
    installed[$package]=1
  fi
done < <(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "${native[@]}" "${windows[@]}" "${sample[@]}" "${x86[@]}" \
  2>/dev/null || true)

missing() {
  local package
  for package in "$@"; do
    if [[ -z ${installed[$package]:-} ]]; then
      printf '%s\n' "$package"
    fi
  done
}
mapfile -t missing_native < <(missing "${native[@]}")
mapfile -t missing_windows < <(missing "${windows[@]}")
mapfile -t missing_sample < <(missing "${sample[@]}")
mapfile -t missing_x86 < <(missing "${x86[@]}")
if ((${#missing_native[@]} + ${#missing_windows[@]} + ${#missing_sample[@]} + ${#missing_x86[@]} == 0)); then
  exit 0
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT
updated=

# Installs the named packages, or says why not.
install() {
  if ((EUID != 0)); then
    echo "setup: these packages are missing, and installing them takes root: $*" >&2
    echo "setup: sudo apt-get update && sudo apt-get install --no-install-recommends $*" >&2
    return 1
  fi
  local apt=(apt-get -qq -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)
  export DEBIAN_FRONTEND=noninteractive
  if [[ -z $updated ]]; then
    # A failure here need not matter: the packages may be known and at hand already.
    "${apt[@]}" update >"$log" 2>&1 </dev/null || true
    updated=1
  fi
  echo "setup: installing $* (takes a while)" >&2
  # Nothing may go for it: i386 packages that lag behind the machine's own would take the 64-bit Wine away.
  if ! "${apt[@]}" install -y --no-install-recommends --no-remove "$@" >>"$log" 2>&1 </dev/null; then
    tail -n 20 "$log" >&2
    echo "setup: could not install $* (the end of apt-get's output is above; is there a network?)" >&2
    return 1
  fi
}

if ((${#missing_native[@]} != 0)); then
  install "${missing_native[@]}" || exit 1
fi
if ((${#missing_windows[@]} != 0)) && ! install "${missing_windows[@]}"; then
  cat >&2 <<'END'
setup: *************************************************************************
setup: *** No cross compiler or no Wine: the Windows target is NOT available. ***
setup: *************************************************************************
END
  if [[ -n ${CI:-} ]]; then
    exit 1
  fi
fi
if ((${#missing_sample[@]} != 0)); then
  install "${missing_sample[@]}" || echo "setup: the sample installer will not be built" >&2
fi
for package in "${missing_x86[@]}"; do
  install "$package" || echo "setup: 32-bit Windows programs can't be built, or not be run here" >&2
done
