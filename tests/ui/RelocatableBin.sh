#!/usr/bin/env bash
# bin/ is relocatable: a copy of it elsewhere runs the console, which loads the package and the demo
# adapter from the copy (checked in the running process's memory map) and connects the adapter.
#   RelocatableBin.sh BIN_DIR
set -euo pipefail
BIN="$1"
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
COPY="$WORK/moved bin"
mkdir -p "$COPY"
for entry in "$BIN"/*; do
  case "$(basename "$entry")" in zpnbd.ini | Noticeboard | test_* ) continue ;; esac
  cp -a "$entry" "$COPY/"
done
cat > "$COPY/zpnbd.ini" <<'INI'
[AdapterConfig]
AlwaysPrompt=0
[Adapters]
Count=2
Adapter_0=DuskMere
Adapter_1=R/Vista
[Adapter_R/Vista]
DLL_Name=ZNBA_Demo
Configured=1
Loadable=1
Enabled=1
INI
export QT_QPA_PLATFORM=offscreen ZNBA_DEMO_SOURCE_TYPE=R/Vista ZNBA_DEMO_INTERVAL_MS=200
export XDG_CONFIG_HOME="$WORK/config"
"$COPY/pvconsole" --quit-after 5 >"$WORK/out.txt" 2>&1 &
PID=$!
MAPS=""
for _ in $(seq 1 40); do
  sleep 0.1
  MAPS="$(cat /proc/$PID/maps 2>/dev/null || true)"
  if grep -q "$COPY/plugins/ZNBA_Demo.so" <<<"$MAPS"; then break; fi
done
wait $PID || { echo "pvconsole failed:"; cat "$WORK/out.txt"; exit 1; }
grep -q "$COPY/noticeboard.so" <<<"$MAPS" || { echo "the package was not loaded from the copy"; exit 1; }
grep -q "$COPY/plugins/ZNBA_Demo.so" <<<"$MAPS" || { echo "the adapter was not loaded from the copy"; exit 1; }
if grep -q "$BIN/" <<<"$MAPS"; then echo "something was loaded from the original bin/"; exit 1; fi
grep -q "Adapter : R/Vista has connected OK" "$COPY/Noticeboard/znb.log" ||
  { echo "the adapter did not connect:"; cat "$COPY/Noticeboard/znb.log"; exit 1; }
echo "bin/ runs from $COPY"
