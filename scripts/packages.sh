# Packages that a build of everything needs; sourced by ./demo and ./check.
#
#   need_packages PACKAGE...
# installs by apt what is missing: as root directly, otherwise by sudo, or it says what to install.

BUILD_PACKAGES="g++ cmake ninja-build qtbase5-dev qttools5-dev qttools5-dev-tools"
TIDY_PACKAGES="clang clang-tidy clang-format"
PACKAGING_PACKAGES="dpkg-dev file gzip"
PACKAGE_CHECK_PACKAGES="appstream desktop-file-utils lintian man-db mmdebstrap"
WORKFLOW_PACKAGES="snakemake"
TOOLS_PACKAGES="python3-numpy python3-tifffile python3-pil python3-h5py"

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null)" = "ii " ]
}

need_packages() {
    local missing="" package
    for package in "$@"; do
        is_installed "$package" || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    if ! command -v apt-get >/dev/null; then
        echo "Please install what these Debian packages hold:$missing" >&2
        return 1
    fi
    local as_root=""
    if [ "$(id -u)" -ne 0 ]; then
        as_root=sudo
        if ! command -v sudo >/dev/null || { [ ! -t 0 ] && ! sudo -n true 2>/dev/null; }; then
            echo "Please install these packages as root: apt-get install$missing" >&2
            return 1
        fi
    fi
    echo "Installing$missing ..."
    local log
    log=$(mktemp)
    if ! { $as_root apt-get update -qq &&
        $as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends $missing; } >"$log" 2>&1; then
        cat "$log" >&2
        return 1
    fi
    rm -f "$log"
}

# build_preset NAME [TARGET...]: configures and builds quietly; shows everything when that fails.
build_preset() {
    local preset=$1 log
    shift
    log=$(mktemp)
    echo "Building (preset $preset) ..."
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${*:+--target "$@"}; } \
        >"$log" 2>&1; then
        cat "$log" >&2
        return 1
    fi
    rm -f "$log"
}
