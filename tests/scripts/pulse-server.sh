#!/usr/bin/env bash
# A private PulseAudio server for the tests: no hardware, no D-Bus, its socket in a folder of the
# build tree. A null sink "testsink" takes what the tests play; its monitor is exposed as the
# ordinary source "testmic", since Qt hides monitor sources from its input list.
#   pulse-server.sh start DIR   start (or restart) the server; prints the PULSE_SERVER value
#   pulse-server.sh stop DIR    stop it
#   pulse-server.sh plug DIR    (re)load the "testmic" source
#   pulse-server.sh unplug DIR  unload it, as if the interface were pulled out
set -euo pipefail

command=${1:?start, stop, plug or unplug}
dir=$(mkdir -p "${2:?folder}" && cd "$2" && pwd)
export HOME="$dir/home" XDG_RUNTIME_DIR="$dir/xdg" XDG_CONFIG_HOME="$dir/home/.config"
export PULSE_SERVER="unix:$dir/native"
mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"

stop_server() {
  if [[ -f "$dir/pid" ]] && kill -0 "$(cat "$dir/pid")" 2>/dev/null; then
    kill "$(cat "$dir/pid")" 2>/dev/null || true
    for _ in $(seq 50); do kill -0 "$(cat "$dir/pid")" 2>/dev/null || break; sleep 0.1; done
  fi
  rm -f "$dir/pid" "$dir/native"
}

plug() {
  pactl load-module module-remap-source master=testsink.monitor source_name=testmic \
    source_properties=device.description=TestMic > "$dir/testmic.module"
  pactl set-default-source testmic
}

unplug() {
  if [[ -s "$dir/testmic.module" ]]; then
    pactl unload-module "$(cat "$dir/testmic.module")" || true
    : > "$dir/testmic.module"
  fi
}

case "$command" in
  start)
    command -v pulseaudio >/dev/null || { echo "pulseaudio is not installed" >&2; exit 1; }
    stop_server
    setsid pulseaudio --daemonize=no --system=false -n --exit-idle-time=-1 --disallow-exit=yes \
      --log-target=file:"$dir/pulse.log" --log-level=info --realtime=no --high-priority=no \
      --load="module-native-protocol-unix auth-anonymous=1 socket=$dir/native" \
      --load="module-null-sink sink_name=testsink rate=48000 format=float32le channels=2 sink_properties=device.description=TestSink" \
      --load="module-always-sink" > "$dir/pulse.stdout" 2>&1 &
    echo $! > "$dir/pid"
    for _ in $(seq 100); do pactl info >/dev/null 2>&1 && break; sleep 0.1; done
    pactl info >/dev/null 2>&1 || { echo "PulseAudio did not start; see $dir/pulse.log" >&2; exit 1; }
    pactl set-default-sink testsink
    plug
    echo "$PULSE_SERVER"
    ;;
  stop) stop_server ;;
  plug) plug ;;
  unplug) unplug ;;
  *) echo "unknown command $command" >&2; exit 2 ;;
esac
