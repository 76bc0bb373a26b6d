#!/bin/sh
# Makes sure the build prerequisites are present. As root with apt-get it
# installs what is missing; otherwise it stops with the command that would.
# Usage: prereqs.sh [bench]
set -eu
need=""
have_cmd() { command -v "$1" >/dev/null 2>&1; }
have_pkg() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"; }

have_cmd cmake || need="$need cmake"
have_cmd g++ || need="$need g++"
have_cmd ninja || need="$need ninja-build"
have_cmd python3 || need="$need python3"
have_cmd pkg-config || need="$need pkg-config"
if have_cmd dpkg-query; then
  have_pkg libgtest-dev || need="$need libgtest-dev"
  if [ "${1:-}" = bench ]; then
    for p in libbenchmark-dev libfftw3-dev libkissfft-dev libvolk2-dev libliquid-dev python3-matplotlib; do
      have_pkg "$p" || need="$need $p"
    done
  fi
fi
[ -z "$need" ] && exit 0

cmd="apt-get update && apt-get install -y --no-install-recommends$need"
if [ "$(id -u)" = 0 ] && have_cmd apt-get; then
  echo "installing:$need"
  sh -c "DEBIAN_FRONTEND=noninteractive $cmd" >/dev/null
else
  echo "missing prerequisites:$need" >&2
  echo "install them with: sudo sh -c '$cmd'" >&2
  exit 1
fi
