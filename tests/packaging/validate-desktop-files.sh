#!/usr/bin/env bash
# The desktop entry and the AppStream metadata pass their validators with nothing to say.
#   validate-desktop-files.sh DESKTOP_FILE METAINFO_FILE
set -euo pipefail
desktop=${1:?desktop entry}
metainfo=${2:?metainfo file}

said=$(desktop-file-validate "$desktop" 2>&1) || { echo "$said"; exit 1; }
if [[ -n "$said" ]]; then
  echo "desktop-file-validate has remarks:"; echo "$said"; exit 1
fi
appstreamcli validate --no-net --strict "$metainfo"
echo "desktop entry and metainfo are valid"
