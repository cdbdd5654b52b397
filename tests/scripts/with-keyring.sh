#!/usr/bin/env bash
# Runs a command inside a private D-Bus session with an unlocked gnome-keyring Secret Service and
# a throw-away home, so that receiver passwords go to a real keyring and nowhere else. The exit
# status is the command's.
#
#   tests/scripts/with-keyring.sh COMMAND [ARGUMENTS...]
#   OSTREL_KEYRING=none tests/scripts/with-keyring.sh ...   a session bus without a keyring
set -euo pipefail
HOME=$(mktemp -d /tmp/ostrel-keyring.XXXXXX)
export HOME
export XDG_RUNTIME_DIR=$HOME/run XDG_DATA_HOME=$HOME/.local/share XDG_CONFIG_HOME=$HOME/.config
mkdir -m 700 -p "$XDG_RUNTIME_DIR"
unset DBUS_SESSION_BUS_ADDRESS DISPLAY
trap 'rm -rf "$HOME"' EXIT
dbus-run-session -- bash -c '
  if [[ "${OSTREL_KEYRING:-}" != none ]]; then
    eval "$(printf %s test-password | gnome-keyring-daemon --unlock --components=secrets)"
    export GNOME_KEYRING_CONTROL
  fi
  "$@"' bash "$@"
