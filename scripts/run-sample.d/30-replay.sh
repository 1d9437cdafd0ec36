#!/usr/bin/env bash
# Replays the sample notice messages through the board's notice callback.
set -euo pipefail
echo "== nbtool replay --results --counters --status examples/messages/*.xml"
"$NBTOOL" replay --results --counters --status examples/messages/*.xml
