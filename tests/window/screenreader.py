#!/usr/bin/python3
"""Reads a palette as a screen reader does: from another process, over the accessibility bus.

    screenreader.py PALETTEWINDOW"""
import subprocess
import sys

from accessibility import find_application, press, pyatspi, start, wait_for

heard = []


def hear(event):
    event.source.clearCache()
    heard.append((event.type, event.detail1, event.source.name, event.source.description))


def wait_to_hear(what, condition):
    return wait_for(what, condition, lambda: f"heard {heard}")


def check(what, actual, expected):
    if actual != expected:
        sys.exit(f"{what}: {actual!r} instead of {expected!r}")


def find_list():
    application = find_application("palettewindow")
    return application and pyatspi.findDescendant(
        application, lambda item: item.getRole() == pyatspi.ROLE_LIST)


def read(list_):
    size = wait_for("rows", lambda: list_.childCount > 302 and list_.childCount)
    blur, gaussian = list_[0], list_[1]
    check("a row", (blur.getRoleName(), blur.name), ("list item", "Blur"))
    check("a row's description", gaussian.description, "2 of 302; Compound; tags: Soft, node")
    check("what a row can do", [gaussian.queryAction().getName(i) for i in range(3)],
          ["Press", "Select", "ShowMenu"])
    widgets = {list_[i].getRoleName(): list_[i].name for i in range(302, size)}
    for role, name in (("text", "Search"), ("button", "Clear the search"),
                       ("page tab list", "Nodes"), ("scroll bar", "Scroll the list")):
        check(f"the name of the {role}", widgets.get(role, widgets.get("push " + role)), name)


def follow(list_):
    pyatspi.Registry.registerEventListener(
        hear, "object:state-changed:selected", "object:state-changed:focused",
        "object:property-change:accessible-description")
    for row in ("Blur", "Gaussian Blur"):
        press("Down")
        wait_to_hear("the focus on a row", lambda: any(
            kind.endswith("focused") and name == row for kind, _, name, _ in heard))
    states = list_[1].getState()
    check("the row's state", [states.contains(pyatspi.STATE_SELECTED),
                              states.contains(pyatspi.STATE_FOCUSED),
                              list_[0].getState().contains(pyatspi.STATE_SELECTED)],
          [True, True, False])
    press("b", "l", "u", "r")
    wait_to_hear("the number of rows", lambda: any("2 items, Blur" in text for *_, text in heard))
    list_.clearCache()
    check("the rows", [list_[0].name, list_[1].name], ["Blur", "Gaussian Blur"])
    list_[1].queryAction().doAction(0)
    wait_to_hear("the activated item", lambda: pyatspi.findAncestor(
        list_, lambda item: item.getRole() == pyatspi.ROLE_APPLICATION)
        and "Gaussian Blur" in subprocess.run(
            ["xdotool", "getactivewindow", "getwindowname"], capture_output=True,
            text=True).stdout)


program = start(sys.argv[1])
try:
    palette = wait_for("the palette", find_list)
    check("its name", palette.name, "Item library")
    read(palette)
    follow(palette)
finally:
    program.kill()
