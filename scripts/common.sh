# What scripts/demo, scripts/check and .ci/run share. To be sourced; leaves the caller in the project's folder.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Debian packages that building, running and testing need.
packages=(
  g++ cmake ninja-build ccache mold
  qt6-base-dev liblmdb-dev zlib1g-dev
  g++-multilib
  libcli11-dev libexpected-dev libfmt-dev nlohmann-json3-dev libcsv-dev libarchive-dev libgraphviz-dev
  libcpp-httplib-dev libsystemd-dev libnats-dev nats-server pkg-config
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
