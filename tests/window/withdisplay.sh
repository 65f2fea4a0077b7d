#!/usr/bin/env bash
# Runs a command on a display of its own, with a window manager: without one, windows never become
# active.
#
#     withdisplay.sh FOLDER COMMAND...
#
# What display and window manager have to say is kept in the folder. Ends with 77 when a program is
# missing that this takes.
set -euo pipefail
for program in Xvfb openbox xdotool import; do
    command -v "$program" >/dev/null || { echo "Left out: there is no $program"; exit 77; }
done
folder=$1
shift
mkdir -p "$folder"
number=$folder/display-$$
mkfifo "$number"
Xvfb -displayfd 3 -screen 0 1400x900x24 -nolisten tcp 3<>"$number" 2>"$folder/xvfb.log" &
server=$!
trap 'kill $server; rm -f "$number"' EXIT
read -r display <"$number"
export DISPLAY=:$display
openbox --sm-disable 2>"$folder/openbox.log" &
until xdotool get_num_desktops >/dev/null 2>&1; do sleep 0.05; done
"$@"
