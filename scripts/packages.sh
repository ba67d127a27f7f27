# The Debian packages that the project needs, by purpose. Sourced by the commands at the top.
# shellcheck shell=bash disable=SC2034

packages_build=(
  g++ cmake ninja-build ccache pkg-config
  libglib2.0-dev libpango1.0-dev libcairo2-dev libicu-dev libical-dev libecal2.0-dev
  nlohmann-json3-dev
  libwayland-dev wayland-protocols
  libxcb1-dev libxcb-randr0-dev libxcb-xfixes0-dev libxcb-shm0-dev
  libxcb-screensaver0-dev libxcb-render0-dev libgtkmm-4.0-dev
  tzdata fontconfig fonts-inter fonts-noto-color-emoji
)

# What shows the program on a machine that has no desktop.
packages_headless=(xvfb xfwm4 hsetroot x11-utils imagemagick)

packages_test=(
  libgtest-dev libgmock-dev libclang-rt-14-dev clang clang-format clang-tidy
  fonts-dejavu-core fonts-noto-core fonts-noto-cjk locales
  dbus dbus-x11 sway swaylock wtype grim swaybg mutter xwayland
  xvfb xauth xfwm4 xfdesktop4 xdotool x11-utils x11-apps x11-xserver-utils imagemagick hsetroot
  libxcb-damage0-dev libxcb-xtest0-dev libxcb-shape0-dev libxcb-composite0-dev
  gnome-shell-common nemo-data mate-desktop-common budgie-desktop-view xfconf dconf-gsettings-backend
  kwin-wayland libkf5screen-bin dbus-daemon python3-gi gir1.2-glib-2.0
  at-spi2-core wtype
  util-linux procps python3 x11-xkb-utils xfce4-panel waybar libglib2.0-bin xdg-desktop-portal
  strace
  evolution-data-server gir1.2-ecal-2.0 gir1.2-edataserver-1.2 python3-radicale
)

# The desktops of the matrix, beside those that the other tests start.
packages_desktops=(
  plasma-workspace plasma-desktop kactivitymanagerd qtwayland5 libkf5globalaccel-bin
  openbox pcmanfm picom i3-wm marco caja muffin nemo kwin-x11
  wayfire libwlroots-dev libegl-dev libgles-dev mate-settings-daemon-common libglib2.0-bin
  gnome-shell gnome-shell-extension-desktop-icons-ng nautilus gnome-session-bin python3-dbusmock
  gir1.2-gdm-1.0 gir1.2-rsvg-2.0 gir1.2-gweather-4.0 gir1.2-ibus-1.0 gir1.2-geoclue-2.0 gir1.2-nm-1.0
  gir1.2-upowerglib-1.0 gir1.2-accountsservice-1.0 gir1.2-gnomebluetooth-3.0 gir1.2-polkit-1.0
  gir1.2-gck-1 gir1.2-gcr-3 gnome-settings-daemon
)

# What looks at the Debian package.
packages_package=(dpkg-dev file lintian desktop-file-utils appstream)

packages_bench=(
  libbenchmark-dev xvfb x11-xserver-utils sway conky-std waybar dbus fonts-dejavu-core libxdamage1 python3
  evolution-data-server gir1.2-ecal-2.0 gir1.2-edataserver-1.2 python3-gi
)
