# What the program needs of Debian's packages, and how to install what is missing.  To be sourced.
RADAR_BUILD_PACKAGES="g++ cmake make zlib1g-dev libbz2-dev libpng-dev libx11-dev libnetcdf-dev"
RADAR_TEST_PACKAGES="libgtest-dev nlohmann-json3-dev ghostscript pngcheck netpbm giflib-tools xvfb xdotool"

radar_is_installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'ok installed'; }

# Installs the packages that are not there yet.  Asks nothing; needs root only when some are missing.
radar_install() {
    local missing=() package sudo=()
    for package in "$@"; do
        radar_is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    [ "$(id -u)" -eq 0 ] || sudo=(sudo -n)
    echo "installing: ${missing[*]}"
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q >/dev/null
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
        "${missing[@]}" >/dev/null
}
