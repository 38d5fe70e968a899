#!/bin/sh
# Run by scripts/package in a fresh Debian 12 that has the packages, the sample network and the user's project in /check.
set -eu
cd /check

install() { apt-get install -y -qq --no-install-recommends "$@" >/check/apt.log 2>&1 || { cat /check/apt.log >&2; exit 1; }; }
shows() {
  grep -q "$1" output && return
  echo "\"$1\" is missing in:" >&2
  cat output >&2
  exit 1
}

echo "The command works on the sample network"
apt-get update -qq
install ./dtsdb_*.deb systemd procps man-db
dtsdb validate ieee14 >output
shows "the model is good"
dtsdb topology ieee14 --sheet islands >output
shows Longtan-G1
dtsdb validate ieee14 -o rtdb:/tmp/grid >output
dtsdb run rtdb:/tmp/grid --once >output
shows "start: full run, 1 live island"
test -s /usr/share/man/man1/dtsdb-run.1.gz

echo "The unit stands, and so does its user"
systemd-analyze verify dtsdb-run@grid.service 2>output || { cat output >&2; exit 1; }
id dtsdb >output

echo "Programs are built with the library and run: CMake"
install ./libdtsdb0_*.deb ./libdtsdb-dev_*.deb g++ cmake make pkg-config
cmake -S project -B built -DEACH_HEADER=OFF >output 2>&1 || { cat output >&2; exit 1; }
cmake --build built --parallel 2 >output 2>&1 || { cat output >&2; exit 1; }
for program in uses_dtsdb uses_dtsdb_static; do
  ./built/$program >output
  shows "1 island"
done
for program in uses_analysis uses_analysis_static; do
  ./built/$program ieee14 >output
  shows "islands: 1"
done

echo "Programs are built with the library and run: pkg-config"
g++ -std=c++20 project/analysis.cpp -o analysis $(pkg-config --cflags --libs dtsdb_analysis)
./analysis ieee14 >output
shows "islands: 1"

if ls python3-dtsdb_*.deb >/dev/null 2>&1; then
  echo "The package for Python works on the sample network"
  install ./python3-dtsdb_*.deb
  python3 -c 'import dtsdb; print(len(dtsdb.open("ieee14").topology().islands), "island")' >output
  shows "1 island"
fi

echo "They leave nothing behind"
dpkg --purge $(dpkg-query -W -f '${Package}\n' | grep -E '^(python3-dtsdb|libdtsdb.*|dtsdb)$') >output 2>&1
find /usr -name '*dtsdb*' >output
test ! -s output || { cat output >&2; exit 1; }
