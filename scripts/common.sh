# Shared by demo and test: where the project lies, what the machine lacks, how a preset is built.
# Sourced, not run. The caller sets `program` (its own name for messages).

set -u -o pipefail
root=$(CDPATH='' cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P) || exit 1
jobs=$(nproc 2>/dev/null || echo 2)
missing=()

fail() {
    printf '%s: %s\n' "$program" "$*" >&2
    exit 1
}

# need_tool COMMAND PACKAGE: notes the package when the command is not there.
need_tool() {
    command -v "$1" >/dev/null 2>&1 || missing+=("$2")
}

# need_header HEADER PACKAGE: the same for a C++ library.
need_header() {
    printf '#include <%s>\n' "$1" | g++ -std=c++20 -E -x c++ - >/dev/null 2>&1 || missing+=("$2")
}

# The prefix under which packages may be installed without a question: nothing for root, sudo
# where it asks for no pass word. Fails where neither holds.
installer() {
    if [ "$(id -u)" -eq 0 ]; then
        echo env
    elif command -v sudo >/dev/null 2>&1 && sudo -n true >/dev/null 2>&1; then
        echo "sudo -n env"
    else
        return 1
    fi
}

# Installs the packages named; apt-get's own words are shown only when it fails.
install_packages() {
    local as log
    as=$(installer) && command -v apt-get >/dev/null 2>&1 || return 1
    echo "$program: installing $*"
    log=$({ $as DEBIAN_FRONTEND=noninteractive apt-get -q update &&
            $as DEBIAN_FRONTEND=noninteractive apt-get -q install -y "$@"; } 2>&1) && return 0
    printf '%s\n' "$log" | tail -n 20 >&2
    return 1
}

# Installs what need_tool and need_header found missing, or ends with one line that names it.
install_missing() {
    [ ${#missing[@]} -eq 0 ] && return 0
    install_packages "${missing[@]}" ||
        fail "missing on this machine; install with: apt-get install ${missing[*]}"
    missing=()
}

# The same for what only widens the tests: it is named and done without.
install_missing_or_say() {
    [ ${#missing[@]} -eq 0 ] && return 0
    install_packages "${missing[@]}" ||
        echo "$program: going on without: ${missing[*]} (tests that need it are skipped)"
    missing=()
}

# configure PRESET [CMAKE ARGUMENT...]: configures build/PRESET. A build directory that was made
# for another place (the project has been moved or copied) is made anew.
configure() {
    local preset=$1 cache="$root/build/$1/CMakeCache.txt" home
    shift
    if [ -f "$cache" ]; then
        home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$cache")
        [ "$home" = "$root" ] || rm -rf -- "$root/build/$preset"
    fi
    (cd -- "$root" && cmake --preset "$preset" "$@")
}

check_build_directory() {
    mkdir -p -- "$root/build" 2>/dev/null && [ -w "$root/build" ] ||
        fail "cannot write in $root/build (was it made by another user?)"
}
