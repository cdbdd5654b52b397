#!/usr/bin/env bash
# A private D-Bus system bus and an avahi-daemon on the loopback interface only, for the DNS-SD
# tests. The bus's socket is in DIR; clients find it through DBUS_SYSTEM_BUS_ADDRESS, which
# `start` prints. Needs root (avahi-daemon keeps its pid in /run/avahi-daemon) and no other
# avahi-daemon running.
#   mdns-server.sh start DIR          start (or restart) bus and daemon
#   mdns-server.sh stop DIR           stop both
#   mdns-server.sh stop-daemon DIR    stop the daemon only, as if it had crashed
#   mdns-server.sh start-daemon DIR   start the daemon again on the running bus
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
command=${1:?start, stop, stop-daemon or start-daemon}
dir=$(mkdir -p "${2:?folder}" && cd "$2" && pwd)
socket="$dir/system_bus_socket"
export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$socket"

stop_pid() {
  local file=$1 pid
  [[ -f "$file" ]] || return 0
  pid=$(cat "$file")
  if kill -0 "$pid" 2>/dev/null; then
    kill "$pid" 2>/dev/null || true
    for _ in $(seq 50); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
    kill -0 "$pid" 2>/dev/null && kill -KILL "$pid" 2>/dev/null || true
  fi
  rm -f "$file"
}

start_bus() {
  command -v dbus-daemon >/dev/null || { echo "dbus-daemon is not installed" >&2; exit 1; }
  sed "s|@SOCKET@|$socket|" "$here/mdns/system-bus.conf.in" > "$dir/system-bus.conf"
  rm -f "$socket"
  dbus-daemon --config-file="$dir/system-bus.conf" --nofork --nopidfile \
    > "$dir/dbus.log" 2>&1 &
  echo $! > "$dir/dbus.pid"
  for _ in $(seq 100); do [[ -S "$socket" ]] && return 0; sleep 0.05; done
  echo "the private system bus did not start; see $dir/dbus.log" >&2
  exit 1
}

start_daemon() {
  command -v avahi-daemon >/dev/null || { echo "avahi-daemon is not installed" >&2; exit 1; }
  if avahi-daemon -c 2>/dev/null; then
    echo "another avahi-daemon is running; stop it first" >&2
    exit 1
  fi
  # In the foreground with its log in DIR: as a daemon it would log to syslog.
  avahi-daemon -f "$here/mdns/avahi-daemon.conf" --no-drop-root --no-chroot --no-rlimits \
    > "$dir/avahi.log" 2>&1 &
  echo $! > "$dir/avahi.pid"
  for _ in $(seq 100); do
    grep -q 'Server startup complete' "$dir/avahi.log" 2>/dev/null && return 0
    kill -0 "$(cat "$dir/avahi.pid")" 2>/dev/null || break
    sleep 0.05
  done
  echo "avahi-daemon did not start:" >&2
  cat "$dir/avahi.log" >&2
  exit 1
}

case "$command" in
  start)
    stop_pid "$dir/avahi.pid"
    stop_pid "$dir/dbus.pid"
    start_bus
    start_daemon
    echo "$DBUS_SYSTEM_BUS_ADDRESS"
    ;;
  stop)
    # The daemon first: it exits by itself when its bus goes, but not cleanly.
    stop_pid "$dir/avahi.pid"
    stop_pid "$dir/dbus.pid"
    rm -f "$socket"
    ;;
  stop-daemon) stop_pid "$dir/avahi.pid" ;;
  start-daemon) start_daemon ;;
  *) echo "unknown command $command" >&2; exit 2 ;;
esac
