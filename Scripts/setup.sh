#!/usr/bin/env bash
# Installs what is missing, and only that: setup.sh GROUP... (build, test, tools; packages.txt says what each needs).
# With nothing missing it returns within a tenth of a second and prints nothing.
set -euo pipefail
cd "$(dirname "$0")/.."

fonts=$(find /usr/share/fonts /usr/local/share/fonts -name '*.[ot]tf' -printf '/%f\n' 2>/dev/null || true)
plugins=$(pkg-config --variable=pluginsdir gstreamer-1.0 2>/dev/null || true)

is_there() {
    case $1 in
        command:*) command -v "${1#*:}" >/dev/null ;;
        library:*) pkg-config --exists "${1#*:}" 2>/dev/null ;;
        plugin:*) [[ -e $plugins/libgst${1#*:}.so ]] ;;
        font:*) [[ $fonts == *"/${1#*:}"* ]] ;;
        *) echo "packages.txt: unknown check $1" >&2 && exit 2 ;;
    esac
}

missing_packages() {
    while read -r group check package; do
        [[ " $* " == *" $group "* ]] && ! is_there "$check" && echo "$package"
    done < <(grep -v '^#' Scripts/packages.txt) || true
}

install_packages() {
    local as_root=()
    if ((EUID != 0)); then
        as_root=(sudo)
        [[ -t 0 ]] || as_root+=(-n) # nobody there to type a password
    fi
    echo "Missing, to be installed with apt-get: $*"
    if ! command -v apt-get >/dev/null; then
        echo "This is no Debian system, so please install what these Debian packages hold, then run this again." >&2
        exit 1
    fi
    if ((EUID != 0)) && ! "${as_root[@]}" true; then
        echo "That needs root. Please run: apt-get install --no-install-recommends $*" >&2
        exit 1
    fi
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
        -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "$@"
}

install_npm_packages() {
    local installed=node_modules/.installed-lock.json
    cmp -s package-lock.json "$installed" && return
    echo "Fonts and pictures from npm:"
    sed -n 's/^ *"\(.*\)": "\([0-9].*\)".*/  \1 \2/p' package.json
    npm ci --ignore-scripts --no-audit --no-fund
    cp package-lock.json "$installed" # written last, so that an interrupted installation starts over
}

mapfile -t missing < <(missing_packages "$@")
if ((${#missing[@]})); then
    install_packages "${missing[@]}"
fi
if [[ " $* " == *" build "* ]]; then
    (cd Resources && install_npm_packages)
fi
