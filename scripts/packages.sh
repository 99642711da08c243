# shellcheck shell=bash
# What Debian 12 has to have for each command, and how it gets it. Sourced by ./run, ./test and .ci/run.

# Building the leaves that need neither Qt nor a desktop (the preset `core`).
export KIVORA_CORE_PACKAGES=(
    g++ cmake ninja-build ccache pkg-config
    libportmidi-dev libasound2-dev libfluidsynth-dev timgm6mb-soundfont
)

# Building and playing.
export KIVORA_RUN_PACKAGES=(
    "${KIVORA_CORE_PACKAGES[@]}"
    qt6-base-dev qt6-base-private-dev qt6-tools-dev qt6-l10n-tools qt6-translations-l10n
    libxkbcommon-dev libxkbcommon-x11-dev libxcb1-dev libxcb-xkb-dev libwayland-dev
    libdbus-1-dev
    librsvg2-bin fonts-inter fonts-play fonts-liberation
)

# Playing on a Wayland desktop, on top.
export KIVORA_WAYLAND_PACKAGES=(qt6-wayland)

# A display where there is none.
export KIVORA_DISPLAY_PACKAGES=(xvfb)

# Testing, on top of what building needs and of the display.
export KIVORA_TEST_PACKAGES=(
    libgtest-dev libgmock-dev libbenchmark-dev libxcb-xtest0-dev locales
    libsm-dev xdotool x11-xkb-utils x11-xserver-utils dbus alsa-utils midicsv python3 python3-mido
    pulseaudio pulseaudio-utils
    weston qt6-wayland qt6-wayland-dev qt6-declarative-dev
    desktop-file-utils appstream libxml2-utils groff zsh fish flatpak-builder
    at-spi2-core gir1.2-atspi-2.0 python3-gi
)

# The further checks of .ci/run, on top of what testing needs.
export KIVORA_CHECK_PACKAGES=(clang clang-format clang-tidy libclang-rt-14-dev llvm shellcheck)

# Making the Debian package, on top of what building needs.
export KIVORA_PACKAGING_PACKAGES=(debhelper dpkg-dev fakeroot lintian)

# is_installed <package>
is_installed() {
    [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# install_packages <what for> <package>...: installs those that are missing and says so; does nothing, and needs no
# network, when all are there. It never removes a package, and leaves a PipeWire desktop without PulseAudio's server,
# whose place PipeWire takes. Returns 1, with what to do, when something cannot be installed.
install_packages() {
    local purpose=$1 package missing=() administrator=()
    shift
    if ! command -v dpkg-query >/dev/null; then
        echo "This is no Debian system: nothing is installed. Needed for $purpose (Debian's names): $*" >&2
        return 0
    fi
    for package in "$@"; do
        if [ "$package" = pulseaudio ] && is_installed pipewire-pulse; then
            continue
        fi
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        administrator=(sudo)
        if ! command -v sudo >/dev/null; then
            echo "Missing for $purpose, and neither root nor sudo to install it. As root:" >&2
            echo "    apt-get install --no-install-recommends --no-remove ${missing[*]}" >&2
            return 1
        fi
    fi
    echo "Installing for $purpose: ${missing[*]}"
    local apt=("${administrator[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0)
    "${apt[@]}" update -q || echo "The package lists could not be renewed; trying with those that are here." >&2
    "${apt[@]}" install -q -y --no-install-recommends --no-remove "${missing[@]}" || {
        echo "Not everything could be installed; what failed stands above." >&2
        return 1
    }
}
