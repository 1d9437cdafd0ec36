#!/usr/bin/env bash
# Filters: the expression of each sample filter file, and the filter language's verdict on some texts.
set -euo pipefail
ROOT="$(cd "$(dirname "$0")/../.." && pwd)"
NBTOOL="${NBTOOL:-$ROOT/build/bin/nbtool}"

for f in "$ROOT"/examples/filters/*.nbf; do
  echo "== nbtool filter-string examples/filters/$(basename "$f")"
  "$NBTOOL" filter-string "$f" | tr -d '\r'
done

check() {
  echo "== nbtool filter-check \"$1\"" | tr -d '\r'
  "$NBTOOL" filter-check "$1" || true
}
check "( note_severity >= 'Fatal' ) AND ( note_summary LIKE '%disk%' )"
check "YEAR(note_raised_date) = 2026 AND ack_date IS NULL"
check "adpt_source_id IN ('db-prod-01', 'db-prod-02') OR note_count * 2 > 10"
check "$(printf '( note_severity >= 3 )\r\nAND ( note_sumary = %sx%s )' "'" "'")"
check "( note_raised_date >= 'yesterday' )"
check "(  =  )"

cd "$ROOT"
echo "== nbtool replay --status --filter-file examples/filters/unacknowledged.nbf examples/messages/*.xml"
"$NBTOOL" replay --status --filter-file examples/filters/unacknowledged.nbf examples/messages/*.xml
echo "== nbtool replay --status --filter \"note_severity >= 'Fatal'\" examples/messages/*.xml"
"$NBTOOL" replay --status --filter "note_severity >= 'Fatal'" examples/messages/*.xml
