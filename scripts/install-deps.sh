#!/usr/bin/env bash
# Installs what building and testing need on Debian 12 or 13; does nothing when all is present.
# Usage: scripts/install-deps.sh [fuzz]
set -euo pipefail

packages=(
    g++ cmake ninja-build
    qt6-base-dev
    # The popover asks the X server whether a window manager runs.
    libxcb1-dev pkg-config
    # Team logos come as PNG, JPEG, SVG or WebP.
    qt6-svg-dev qt6-image-formats-plugins
    libsimdjson-dev libbenchmark-dev
    # The popover: Qt Quick and the QML modules it imports (they do not depend on each other).
    qt6-declarative-dev qml6-module-qtquick qml6-module-qtquick-layouts
    qml6-module-qtquick-window qml6-module-qtqml-workerscript qml6-module-qttest
    # qmllint, and the QtQml types (Timer, easing curves) it checks the QML against.
    qt6-declarative-dev-tools qml6-module-qtqml
    # lupdate and lrelease, and their CMake functions, for the translations.
    qt6-tools-dev qt6-l10n-tools
    # Text for the league simulator's badges, and the colour emoji of titles and rows.
    fonts-dejavu-core fonts-noto-color-emoji
    # The tray shell on X11 (the xcb platform plugin is only a recommendation of Qt's GUI).
    qt6-qpa-plugins
    # End-to-end tests: a private session bus, an X server, a tray host, a StatusNotifierWatcher,
    # clicks, screenshots and a notification server; and the checks of the desktop files.
    dbus-daemon xvfb x11-utils xdotool trayer haskell-status-notifier-item-utils imagemagick dunst
    # The popover under a Wayland compositor, through Xwayland.
    weston xwayland
    # The popover under real shells: GNOME Shell (X11 and Wayland) and its command-line tools,
    # and KDE Plasma on X11. The shell serves notifications through a gjs service: without it a
    # notification starts dunst outside any display, after which the tests saw keys go missing.
    gnome-shell gnome-shell-extension-appindicator libglib2.0-bin gjs
    plasma-workspace plasma-desktop kwin-x11
    appstream desktop-file-utils
    # Loopback in the network namespace of a test run of its own.
    iproute2
    # The measuring scripts' panel registers its StatusNotifierHost from Python.
    python3-gi gir1.2-glib-2.0
    # A screen reader's view: the accessibility bus, and an AT-SPI client.
    at-spi2-core python3-pyatspi
    # cpack's .deb, whose dependencies it reads with dpkg-shlibdeps and file
    dpkg-dev file
)
if [[ "${1:-}" == fuzz ]]; then
    packages+=(clang libclang-rt-14-dev)
fi

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$'; then
        missing+=("$package")
    fi
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

sudo=()
[[ $(id -u) -ne 0 ]] && sudo=(sudo)
echo "Installing: ${missing[*]}"
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}"
