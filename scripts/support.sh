# Shared by the scripts: finding the project, installing what is missing, building.
# Sourced, not run. ZELKOR_JOBS sets the number of compile jobs (default: all processors).

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_packages=(g++ cmake ninja-build libgtest-dev libgmock-dev libcli11-dev)
word_packages=(wamerican wngerman)
bench_packages=(libbenchmark-dev libfmt-dev libicu-dev liblmdb-dev libmarisa-dev libsqlite3-dev qtbase5-dev pkg-config)
check_packages=(clang clang-format libclang-rt-14-dev doxygen git pkg-config python3)

say() { printf '\033[1m== %s\033[0m\n' "$*"; }

# require_packages NAME...: installs the Debian packages that are missing, or says which they are.
require_packages() {
    local missing=() name
    for name in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null || true)" = installed ] || missing+=("$name")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" != 0 ]; then
        echo "These packages are missing; install them and run this again:" >&2
        echo "    sudo apt-get install ${missing[*]}" >&2
        exit 1
    fi
    say "Installing ${missing[*]}"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [CMAKE-BUILD-ARGUMENT...]: configures and builds one preset below build/.
build() {
    local preset=$1
    shift
    local options=()
    # A folder configured before keeps its generator.
    [ -f "build/$preset/CMakeCache.txt" ] || options+=(-G Ninja)
    if command -v ccache >/dev/null; then options+=(-D CMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
    say "Building $preset"
    cmake --preset "$preset" "${options[@]}" >/dev/null
    cmake --build "build/$preset" -j "${ZELKOR_JOBS:-$(nproc)}" "$@"
}
