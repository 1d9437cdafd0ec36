#!/usr/bin/env bash
# Configuration: the sample zpnbd.ini as the board reads it, with its folder moved to a scratch place.
set -euo pipefail
ROOT="$(cd "$(dirname "$0")/../.." && pwd)"
NBTOOL="${NBTOOL:-$ROOT/build/bin/nbtool}"

WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
sed "s|^NBFolder=.*|NBFolder=$WORK/Noticeboard|" "$ROOT/examples/zpnbd.ini" > "$WORK/zpnbd.ini"

echo "== nbtool config --ini <scratch>/zpnbd.ini   (examples/zpnbd.ini, NBFolder moved to <scratch>)"
"$NBTOOL" config --ini "$WORK/zpnbd.ini" | sed "s|$WORK|<scratch>|g"
