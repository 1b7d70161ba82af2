#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the benchmarks need.
# Only what is missing is installed, so a ready machine is left alone.
set -euo pipefail

packages=(
    cmake make g++ gcc pkg-config binutils
    fftw-dev            # FFTW 2.1.5, double precision: rfftw.h, librfftw, libfftw
    libboost-dev        # boost::shared_ptr and its array deleters
    libgtest-dev libgmock-dev
    libbenchmark-dev
    nlohmann-json3-dev  # JSON of the tool and of the conformance test
    libpng-dev          # the tool's PNG images
    valgrind            # make memcheck
    # The Python package: installed offline into a venv of the system's Python
    python3 python3-venv python3-setuptools python3-wheel
    python3-numpy python3-pytest python3-dask python3-distributed
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "deps: all packages present"
    exit 0
fi

echo "deps: installing ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
    sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
