# What scripts/demo, scripts/check and .ci/run share. To be sourced; leaves the caller in the project's folder.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Debian packages that building, running and testing need.
packages=(
  g++ cmake ninja-build ccache mold
  qt6-base-dev liblmdb-dev zlib1g-dev
  g++-multilib
  libcli11-dev libexpected-dev libfmt-dev nlohmann-json3-dev libcsv-dev libarchive-dev libgraphviz-dev
  libcpp-httplib-dev libsystemd-dev libnats-dev nats-server openssl pkg-config
  python3-jinja2
  python3-dev pybind11-dev python3-numpy python3-pandas python3-pytest python3-distributed mypy
  libgtest-dev librapidcheck-dev libeigen3-dev libbenchmark-dev libxml2-utils
  zsh fish mandoc
)
# What building the page's front end needs, and what the tests that look at the page in a browser need besides. Users
# and the demo need neither: the front end comes built.
web_packages=(nodejs)
command -v npm >/dev/null || web_packages+=(npm)  # a nodejs that isn't Debian's brings its own
browser_packages=("${web_packages[@]}" chromium fonts-liberation fonts-dejavu-core)
# What building the Debian packages needs besides.
package_packages=(dpkg-dev)
# What building the documentation site needs.
docs_packages=(cmake git doxygen mkdocs mkdocs-material python3-pymdownx)

heading() { printf '\n== %s\n' "$*"; }

# Installs the packages that are missing; nothing to do leaves the machine untouched.
install_needs() {
  local missing=() package
  for package in "${packages[@]}"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done
  if [ ${#missing[@]} -eq 0 ]; then return; fi

  local root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing, and neither root nor sudo is at hand to install them: ${missing[*]}" >&2
      echo "Have them installed (apt-get install ${missing[*]}), then run this again." >&2
      exit 1
    fi
    root=(sudo)
  fi
  heading "Installing ${missing[*]}"
  "${root[@]}" apt-get update -qq
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [TARGET...]: configures and builds.
build() {
  local preset=$1
  shift
  heading "Building ($preset)"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" ${1:+--target "$@"}
}

# The mirror that this machine's packages of Debian 12 come from.
debian_mirror() {
  apt-get indextargets --format '$(RELEASE) $(COMPONENT) $(SITE)' 'Created-By: Packages' |
    awk '$1 == "bookworm" && $2 == "main" && !found { print $3; found = 1 }'
}

# make_fresh_debian FOLDER: a Debian 12 with nothing but its base, in which packages can be installed.
make_fresh_debian() {
  if [ "$(id -u)" -ne 0 ]; then
    echo "$0: this makes a Debian of its own, which only root may; run it as root" >&2
    exit 1
  fi
  mkdir -p build/release
  debootstrap --variant=minbase bookworm "$1" "$(debian_mirror)" >build/release/debootstrap.log ||
    { tail -20 build/release/debootstrap.log >&2; exit 1; }
  cp /etc/resolv.conf "$1/etc/resolv.conf"
  echo force-unsafe-io >"$1/etc/dpkg/dpkg.cfg.d/quick"
}

# in_fresh_debian FOLDER COMMAND...: runs it there. What is mounted there and what still runs there goes with the namespace.
in_fresh_debian() {
  unshare --mount --pid --ipc --fork sh -c \
    'root=$0 && mount -t proc proc "$root/proc" && exec chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@"' "$@"
}
