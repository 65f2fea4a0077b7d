#!/usr/bin/env bash
# Runs a command on a message bus of its own. Ends with 77 where there is none to be had.
set -euo pipefail
for program in dbus-run-session /usr/libexec/at-spi-bus-launcher; do
    command -v "$program" >/dev/null || { echo "Left out: there is no $program"; exit 77; }
done
exec dbus-run-session -- "$@"
