# What ./run, ./test and .ci/run share. Sourced by them from bash with `set -euo pipefail`; sets
# `root`, the folder of the repository, and leaves the caller's working directory alone.

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P)

say() { printf '%s\n' "$*" >&2; }

give_up() {
    say "$*"
    exit 1
}

# Debian 12, or a system made from it, whose packages have the names of our list.
is_debian_12() (
    [[ -r /etc/os-release ]] || return 1
    # shellcheck source=/dev/null
    . /etc/os-release
    if [[ ${ID:-} == debian ]]; then
        [[ ${VERSION_ID:-} == 12 ]]
    else
        [[ " ${ID_LIKE:-} " == *" debian "* ]] \
            && [[ ${DEBIAN_CODENAME:-${VERSION_CODENAME:-}} == bookworm ]]
    fi
)

# The packages of the groups named, one a line.
packages_of() {
    local groups=" $* " group='' line
    while read -r line || [[ -n $line ]]; do
        line=${line%%#*}
        line=${line%"${line##*[![:space:]]}"}
        if [[ $line == \[*\] ]]; then
            group=${line:1:-1}
        elif [[ -n $line && $groups == *" $group "* ]]; then
            printf '%s\n' "$line"
        fi
    done <"$root/packaging/debian-packages.txt"
}

# Those of its arguments that are not installed, one a line.
missing_packages() {
    local installed package
    installed=$(dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null \
        || true)
    for package in "$@"; do
        if ! grep -qxF "installed $package" <<<"$installed"; then
            printf '%s\n' "$package"
        fi
    done
}

# Installs what is missing of the groups named. What apt-get says goes to a file, since it names
# the machine's servers.
install_packages() {
    local packages missing as_root=() log=$root/build/packages.log
    mapfile -t packages < <(packages_of "$@")
    mapfile -t missing < <(missing_packages "${packages[@]}")
    if ((${#missing[@]} == 0)); then
        return
    fi
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            give_up "Please have these packages installed first: ${missing[*]}."
        fi
        as_root=(sudo)
    fi
    say "Installing ${#missing[@]} packages: ${missing[*]}."
    mkdir -p "$root/build"
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq
        -o DPkg::Lock::Timeout=300)
    # Without a connection the lists of last time, or the packages in the cache, may still do.
    "${apt[@]}" update >"$log" 2>&1 || true
    if ! "${apt[@]}" install --yes --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
        give_up "The installation failed; $log has the words of apt-get."
    fi
}

# Names what is missing on a system whose packages we do not know, and stops if anything is.
# The first argument is "with tests" or "without tests".
check_libraries() {
    local missing=() tool folder report
    for tool in cmake ninja pkg-config; do
        command -v "$tool" >/dev/null || missing+=("$tool")
    done
    if [[ -z ${CXX:-} ]] && ! command -v c++ >/dev/null && ! command -v g++ >/dev/null \
        && ! command -v clang++ >/dev/null; then
        missing+=("a C++20 compiler (GCC 12 or Clang 16)")
    fi
    if ((${#missing[@]} > 0)); then
        say "These tools are missing: $(join "${missing[@]}")."
        give_up "Gruk needs $(tr '\n' ' ' <"$root/scripts/dependencies/needed.txt")"
    fi
    folder=$(mktemp -d)
    report=$folder/missing.txt
    cmake -S "$root/scripts/dependencies" -B "$folder/build" -G Ninja -Wno-dev \
        -DREPORT="$report" -DTESTS="$([[ $1 == 'with tests' ]] && echo ON || echo OFF)" \
        >"$folder/log" 2>&1 || cat "$folder/log" >&2
    if [[ -f $report ]]; then
        mapfile -t missing <"$report"
    else
        missing=("a C++20 compiler that works (GCC 12 or Clang 16)")
    fi
    rm -rf -- "$folder"
    if ((${#missing[@]} > 0)); then
        give_up "Missing, or too old: $(join "${missing[@]}"). Please install them and try again."
    fi
}

# Its arguments with ", " between them.
join() {
    local text=$1
    shift
    printf '%s' "$text" "${@/#/, }"
}

# Whether the build tree of a preset has been configured for this folder.
is_configured() {
    [[ -f $root/build/$1/build.ninja ]] \
        && grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$root/build/$1/CMakeCache.txt" 2>/dev/null
}

# Configures a preset, with further arguments for CMake. A tree that was made elsewhere, before
# the folder was moved or copied, is begun anew.
configure() {
    local preset=$1 fresh=()
    shift
    if [[ -f $root/build/$preset/CMakeCache.txt ]] && ! is_configured "$preset"; then
        fresh=(--fresh)
    fi
    say "Configuring the $preset build."
    (cd "$root" && cmake --preset "$preset" "${fresh[@]}" "$@" >/dev/null)
}

# Builds targets of a preset, all of them when none is named.
build() {
    local preset=$1 targets=()
    shift
    if (($# > 0)); then
        targets=(--target "$@")
    fi
    say "Building."
    (cd "$root" && cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}")
}
