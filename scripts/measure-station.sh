#!/usr/bin/env bash
# Measures the station as an operator would run it, on this machine only: a private PulseAudio
# server with a 1 kHz tone playing into its test microphone at 48 kHz, Xvfb for the screen.
# Reports the time from launch to the first reading on screen, CPU use and peak memory.
#   scripts/measure-station.sh BUILD_DIR [SECONDS] [bars|line|spectrogram]
set -euo pipefail

build=$(cd "${1:?build folder, e.g. build/release}" && pwd)
seconds=${2:-30}
style=${3:-bars}
case "$style" in bars|line|spectrogram) ;; *) echo "unknown spectrum style $style" >&2; exit 2 ;; esac
root=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d /tmp/ostrel-measure.XXXXXX)
station="$build/src/app/ostrel-live"
tone="$build/tools/ostrel-tone/ostrel-tone"
for tool in "$station" "$tone" /usr/bin/time xvfb-run paplay; do
  command -v "$tool" >/dev/null || { echo "missing $tool" >&2; exit 1; }
done

player=""
cleanup() {
  [[ -n "$player" ]] && kill "$player" 2>/dev/null || true
  "$root/tests/scripts/pulse-server.sh" stop "$work/pulse" || true
}
trap cleanup EXIT

export PULSE_SERVER
PULSE_SERVER=$("$root/tests/scripts/pulse-server.sh" start "$work/pulse")
export HOME="$work/pulse/home" XDG_RUNTIME_DIR="$work/pulse/xdg" XDG_CONFIG_HOME="$work/pulse/home/.config"
# The station's preferences in the private home: the spectrum style to measure with.
mkdir -p "$XDG_CONFIG_HOME/Ostrel"
printf '[General]\nspectrumStyle=%s\n' "$style" > "$XDG_CONFIG_HOME/Ostrel/Ostrel Live.conf"

"$tone" --frequency 1000 --amplitude 0.1 --seconds $((seconds + 30)) --rate 48000 \
  --output "$work/tone.wav" 2>/dev/null
# A low-latency player keeps the null sink running in small blocks, as a real microphone would.
paplay --latency-msec=10 --device=testsink "$work/tone.wav" &
player=$!
sleep 1

# The station runs for `seconds`, then gets SIGTERM and quits as from the window's close.
cat > "$work/run.sh" <<RUN
#!/usr/bin/env bash
date +%s%3N > "$work/launched"
/usr/bin/time -v -o "$work/time.txt" "$station" > "$work/station.log" 2>&1 &
timer=\$!
sleep $seconds
kill -TERM \$(pgrep -P \$timer)
wait \$timer
RUN
chmod +x "$work/run.sh"
xvfb-run -a -s "-screen 0 1920x1080x24" "$work/run.sh"

launched=$(cat "$work/launched")
line=$(grep -m1 'First reading on screen' "$work/station.log" || true)
if [[ -z "$line" ]]; then
  echo "No reading reached the screen; log:" >&2
  cat "$work/station.log" >&2
  exit 1
fi
shown=$(sed -E 's/.*at ([0-9]+)\).*/\1/' <<<"$line")
echo "$line"
echo "spectrum style: $style"
echo "first reading on screen: $((shown - launched)) ms after the process was started"
grep -E 'Percent of CPU|User time|System time|Elapsed|Maximum resident|Exit status' "$work/time.txt"
echo "(logs in $work)"
