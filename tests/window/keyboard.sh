#!/usr/bin/env bash
# Builds a graph with the program and without a mouse, looks at what was saved, and leaves pictures.
#
#     keyboard.sh PROGRAM FOLDER [OPTION...]
set -euo pipefail
program=$1 pictures=$2
shift 2
mkdir -p "$pictures"
export HOME=$(mktemp -d)
export XDG_CONFIG_HOME=$HOME XDG_DATA_HOME=$HOME XDG_CACHE_HOME=$HOME
trap 'rm -rf "$HOME"' EXIT

press() { for key in "$@"; do xdotool key --delay 50 "$key"; sleep 0.2; done; }
enter() { xdotool type --delay 15 "$1"; sleep 0.2; press Return; }
show() { import -window root "$pictures/$1.png"; }
await() {
    for _ in $(seq 400); do
        title=$(xdotool getactivewindow getwindowname 2>/dev/null || true)
        # shellcheck disable=SC2053
        [[ $title == $1 ]] && return
        sleep 0.05
    done
    echo "There is no window \"$1\" but \"$title\""
    exit 1
}

"$program" "$@" &
await 'Sample Library'
# The search field has the focus from the start.
press alt+c Down Return
await 'Create compound'
press ctrl+a
enter Story
await 'Story - Sample Library*'
press ctrl+f
enter add
# To the canvas, and on from the node.
press Escape Escape ctrl+Return
show popup
enter multiply
press ctrl+Return
enter subtract
show graph
press ctrl+f
xdotool type --delay 15 story
press F2
await 'Rename Story'
press ctrl+a
enter Told
await 'Told - Sample Library*'
# The last entry of the menu.
press ctrl+f
xdotool type --delay 15 told
press Menu
show menu
press Up Return
await 'Edit Item Tags'
enter 'by hand'
await 'Told - *'
press ctrl+s
await 'Told - Sample Library'
press ctrl+q
wait $!

python3 - "$HOME"/nodeeditor/sample-library/project/story.json <<'END'
import json, sys
compound = json.load(open(sys.argv[1]))
ends = [(c["from"][0], c["to"][0]) for c in compound["connections"]]
assert compound["name"] == "Told", compound
assert compound["tags"] == {"ApplicationTags": "by hand"}, compound
assert ends == [("add", "multiply"), ("multiply", "subtract")], ends
END
