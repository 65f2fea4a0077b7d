#!/usr/bin/python3
"""Builds a graph with the program, without a mouse and without looking: each step follows from the
tree that a screen reader gets. Looks at what was saved, and leaves pictures for people.

    story.py PROGRAM FOLDER [OPTION...]"""
import json
import os
import re
import subprocess
import sys
import tempfile
import time

from accessibility import GLib, find_application, press, pyatspi, start, wait_for

STATES = {"active": pyatspi.STATE_ACTIVE, "focused": pyatspi.STATE_FOCUSED,
          "selected": pyatspi.STATE_SELECTED}
# Of long lists the start is read, and the end, where other children are.
MOST_ROWS = 12


def read(item, level=0):
    """The lines of the printed tree: role, name, description and states of what is shown."""
    item.clearCache()
    states = item.getState()
    if level and not states.contains(pyatspi.STATE_SHOWING):
        return
    words = [name for name, state in STATES.items() if states.contains(state)]
    yield f"{'  ' * level}{item.getRoleName()}: {item.name} ({item.description}) {' '.join(words)}"
    count = item.childCount
    for index in range(count):
        child = item[index] if index < MOST_ROWS or index >= count - MOST_ROWS else None
        if child:
            yield from read(child, level + 1)


def print_tree():
    try:
        return list(read(find_application("nodeeditor")))
    except (AttributeError, GLib.Error):
        # It is not there yet, or changed meanwhile.
        return []


def see(pattern):
    """Waits for a line of the tree, and gives the last such line."""
    def find():
        lines = [line for line in print_tree() if re.search(pattern, line)]
        return lines[-1] if lines else None
    return wait_for(pattern, find, lambda: "there is\n" + "\n".join(print_tree()))


def write(text, *keys):
    subprocess.run(["xdotool", "type", "--delay", "15", text], check=True)
    if keys:
        press(*keys)


def choose(entry):
    line = ""
    while entry not in line:
        press("Down")
        # Where the focus is then, not where it was.
        time.sleep(0.3)
        line = see("menu item: .* focused$")
    press("Return")


def show(name):
    subprocess.run(["import", "-window", "root", f"{sys.argv[2]}/{name}.png"], check=True)


def tell():
    see(r"frame: Sample Library \(.* active")
    see("text: Search .*focused")
    press("alt+c")
    see("menu item: Create .*focused")
    choose("Public compound")
    see("dialog: Create compound .*active")
    see("text: Compound name: .*focused")
    press("ctrl+a")
    write("Story", "Return")
    see(r"frame: Story - Sample Library\* .*active")
    see("list: Graph of Story")
    write("add")
    see("list item: Add .*selected")
    press("Return")
    see(r"list item: Add \(add, .* selected")
    press("Escape", "Escape")
    see("list: Graph of Story .*focused")
    for name, words in (("Multiply", "from add result"), ("Subtract", "from multiply result")):
        press("ctrl+Return")
        see(": Add a node")
        see("text: Search .*focused")
        write(name.lower())
        see(f"list item: {name} .*focused selected")
        show("popup")
        press("Return")
        see(rf"list item: {name} \({name.lower()}, solver; inputs a.* {words}.* focused selected")
    show("graph")
    press("ctrl+f")
    write("story")
    see(r"list item: Story\* .*selected")
    press("F2")
    see("dialog: Rename Story .*active")
    see("text: New name: .*focused")
    press("ctrl+a")
    write("Told", "Return")
    see(r"frame: Told - Sample Library\* .*active")
    press("ctrl+f")
    write("told")
    see(r"list item: Told\* .*selected")
    press("Menu")
    show("menu")
    choose("Edit Tags")
    see("dialog: Edit Item Tags .*active")
    see("text: Tags: .*focused")
    write("by hand", "Return")
    see(r"list item: Told\* .*tags: by hand")
    press("ctrl+s")
    see(r"frame: Told - Sample Library \(.* active")
    press("ctrl+q")


def check_saved(home):
    with open(f"{home}/nodeeditor/sample-library/project/story.json", encoding="utf-8") as file:
        compound = json.load(file)
    ends = [(wire["from"][0], wire["to"][0]) for wire in compound["connections"]]
    assert compound["name"] == "Told", compound
    assert compound["tags"] == {"ApplicationTags": "by hand"}, compound
    assert ends == [("add", "multiply"), ("multiply", "subtract")], ends


os.makedirs(sys.argv[2], exist_ok=True)
with tempfile.TemporaryDirectory() as folder:
    for variable in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
        os.environ[variable] = folder
    program = start(sys.argv[1], *sys.argv[3:])
    try:
        tell()
        assert program.wait(timeout=30) == 0
        check_saved(folder)
    finally:
        program.kill()
