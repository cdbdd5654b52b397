#!/usr/bin/env bash
# `cmake --install` into a scratch prefix gives the station with its desktop files, and the
# installed station starts: it renders its main window offscreen and quits.
#   install-and-start.sh BUILD_DIR WORK_DIR
set -euo pipefail
build=${1:?build folder}
work=${2:?scratch folder}
rm -rf "$work"
mkdir -p "$work"
prefix="$work/prefix"
cmake --install "$build" --prefix "$prefix" > "$work/install.log"

for file in bin/ostrel-live share/applications/app.ostrel.OstrelLive.desktop \
    share/metainfo/app.ostrel.OstrelLive.metainfo.xml \
    share/icons/hicolor/scalable/apps/app.ostrel.OstrelLive.svg; do
  [[ -f "$prefix/$file" ]] || { echo "missing from the install: $file"; exit 1; }
done
grep -q '<release version="[0-9]' "$prefix/share/metainfo/app.ostrel.OstrelLive.metainfo.xml" \
  || { echo "the metainfo has no release version"; exit 1; }

# Out of the source and build trees, with a home of its own.
cd "$work"
export HOME="$work/home" XDG_RUNTIME_DIR="$work/xdg" QT_QPA_PLATFORM=offscreen
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
timeout 60 "$prefix/bin/ostrel-live" -screenshot started.png -size 800x600
[[ -s started.png ]] || { echo "the installed station drew nothing"; exit 1; }
echo "installed into $prefix and started"
