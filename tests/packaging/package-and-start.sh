#!/usr/bin/env bash
# The Debian package CPack makes: it holds the station and its desktop files under /usr,
# declares the libraries and the QML modules it needs, every one of them a package this
# machine knows, and the station unpacked from it starts.
#   package-and-start.sh BUILD_DIR WORK_DIR
set -euo pipefail
build=${1:?build folder}
work=${2:?scratch folder}
rm -rf "$work"
mkdir -p "$work"
cpack --config "$build/CPackConfig.cmake" -B "$work" > "$work/cpack.log" 2>&1 \
  || { cat "$work/cpack.log"; exit 1; }
package=$(ls "$work"/ostrel-live_*.deb)
echo "package: $(basename "$package")"

contents=$(dpkg-deb --contents "$package")
for file in ./usr/bin/ostrel-live ./usr/share/applications/app.ostrel.OstrelLive.desktop \
    ./usr/share/metainfo/app.ostrel.OstrelLive.metainfo.xml \
    ./usr/share/icons/hicolor/scalable/apps/app.ostrel.OstrelLive.svg; do
  grep -q " $file\$" <<< "$contents" || { echo "missing from the package: $file"; exit 1; }
done

depends=$(dpkg-deb --field "$package" Depends)
echo "Depends: $depends"
for needed in libqt6quick6 libqt6multimedia6 libqt6network6 libfftw3 libavcodec \
    qml6-module-qtquick-controls qml6-module-qtquick-dialogs fonts-material-design-icons-iconfont; do
  grep -q "$needed" <<< "$depends" || { echo "the package doesn't declare $needed"; exit 1; }
done
# Every dependency names a package Debian has: each is installed here, since the tests need them.
IFS=',' read -ra entries <<< "$depends"
for entry in "${entries[@]}"; do
  name=$(sed -E 's/^ *([^ (|]+).*/\1/' <<< "$entry")
  dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q "install ok installed" \
    || { echo "declared dependency $name is not a package installed here"; exit 1; }
done

# Unpacked as dpkg would install it, the station starts.
dpkg-deb --extract "$package" "$work/root"
cd "$work"
export HOME="$work/home" XDG_RUNTIME_DIR="$work/xdg" QT_QPA_PLATFORM=offscreen
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
timeout 60 "$work/root/usr/bin/ostrel-live" -screenshot started.png -size 800x600
[[ -s started.png ]] || { echo "the packaged station drew nothing"; exit 1; }
echo "packaged, declared and started"
