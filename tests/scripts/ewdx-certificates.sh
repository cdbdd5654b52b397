#!/usr/bin/env bash
# Makes two self-signed certificates for the fake EW-DX receiver, as a receiver makes its own:
# "first" and "second", so a test can show a receiver whose certificate changed.
#
#   tests/scripts/ewdx-certificates.sh DIR
set -euo pipefail
dir=${1:?usage: ewdx-certificates.sh DIR}
mkdir -p "$dir"
for name in first second; do
  [[ -s "$dir/$name.pem" && -s "$dir/$name.key" ]] && continue
  openssl req -x509 -newkey rsa:2048 -nodes -days 30 -subj "/CN=ewdx-$name.local" \
    -keyout "$dir/$name.key" -out "$dir/$name.pem" 2>/dev/null
done
echo "certificates in $dir"
