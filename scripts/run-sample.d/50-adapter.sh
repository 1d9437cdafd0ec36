#!/usr/bin/env bash
# Runs the demo adapter for five seconds against a board of its own and prints what arrived.
set -euo pipefail
echo "== ZNBA_DEMO_INTERVAL_MS=1000 nbtool adapter ZNBA_Demo --seconds 5"
ZNBA_DEMO_INTERVAL_MS=1000 ZNBA_DEMO_SEED=1 "$NBTOOL" adapter ZNBA_Demo --seconds 5
