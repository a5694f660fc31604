#!/bin/sh
# check.sh SETTINGS ORIGIN STEP: makes the ORIGIN, which is an installation (install) or the unpacked package (package),
# or builds and runs the consumer from it.
# shellcheck disable=SC1090,SC2154  # The settings are variables.
set -eu
. "$1"
origin=$2 step=$3
work=$work/$origin
prefix=$work/prefix

# Leaves in $prefix what is in the package that cpack makes.
unpack() {
  "$cpack" --config "$build/CPackConfig.cmake" -B "$work/packages" >"$work/cpack.log" || {
    cat "$work/cpack.log"
    return 1
  }
  if [ -n "$suffix" ]; then
    cd "$work"
    "$cmake" -E tar xf packages/*.zip
    mv vlhostkit-* "$prefix"
  else
    dpkg-deb -x "$work"/packages/*.deb "$work/unpacked"
    mv "$work/unpacked/usr" "$prefix"
  fi
}

# Runs the consumer with the libraries of the installation, and makes sure that it does not run without them.
run() {
  program=$1
  cd "$(dirname "$program")"
  if [ -n "$emulator" ]; then
    if "$emulator" "$program"; then
      echo "The consumer found libraries outside the installation."
      return 1
    fi
    WINEPATH="Z:$(printf '%s' "$prefix/$bin" | tr / '\134')" "$emulator" "$program"
  else
    LD_LIBRARY_PATH=$prefix/$lib "$program"
    # Every library of the product that the loader takes has to be an installed one.
    LD_LIBRARY_PATH=$prefix/$lib ldd "$program" | grep -E 'vlhostkitu|vlplatform|txlogu|tx\.cext' >libraries
    if grep -v -F "=> $prefix/$lib/" libraries; then
      echo "The consumer takes libraries from outside the installation."
      return 1
    fi
  fi
}

case $step in
  make)
    rm -rf "$work"
    mkdir -p "$work"
    if [ "$origin" = install ]; then
      "$cmake" --install "$build" --prefix "$prefix" >/dev/null
      where=$prefix/$lib/cmake
    else
      unpack
      where=$prefix  # stripped, so that the programs don't name folders either
    fi
    for file in "$prefix/$lib/cmake/vlhostkit/vlhostkitConfig.cmake" "$prefix/$lib/pkgconfig/vlhostkit.pc" \
      "$prefix/include/vlhostkit/vlhostkit.h" "$prefix/share/doc/vlhostkit/README.md"; do
      test -f "$file"
    done
    if grep -r -l -F -e "$build" -e "$top" "$where"; then
      echo "These files name folders of the build."
      exit 1
    fi
    ;;
  find_package)
    folder=$work/find_package
    rm -rf "$folder"
    "$cmake" -G "$generator" ${toolchain:+"$toolchain"} -DCMAKE_CXX_COMPILER="$compiler" \
      -DCMAKE_PREFIX_PATH="$prefix" -S "$source/find_package" -B "$folder"
    "$cmake" --build "$folder"
    run "$folder/consumer$suffix"
    ;;
  pkg_config)
    folder=$work/pkg_config
    rm -rf "$folder"
    mkdir "$folder"
    # Nothing but the installation: the machine's own packages are not for the other target.
    export PKG_CONFIG_LIBDIR="$prefix/$lib/pkgconfig"
    # shellcheck disable=SC2046  # Flags are words.
    "$compiler" -std=c++20 "$source/main.cpp" -o "$folder/consumer$suffix" $(pkg-config --cflags --libs vlhostkit)
    run "$folder/consumer$suffix"
    ;;
  *)
    echo "unknown step $step"
    exit 2
    ;;
esac
