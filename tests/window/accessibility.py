"""Reads a program as a screen reader does: from another process, over the accessibility bus.

Ends with 77 where the bus or its bindings are missing."""
import subprocess
import sys
import time

try:
    import gi
    import pyatspi
    from gi.repository import GLib
except (ImportError, ValueError) as fault:
    print("Left out: no python3-pyatspi:", fault)
    sys.exit(77)


def wait_for(what, condition, explain=lambda: ""):
    """Gives what the condition gives, once that is something."""
    deadline = time.monotonic() + 30
    while time.monotonic() < deadline:
        while GLib.MainContext.default().iteration(False):
            pass
        result = condition()
        if result:
            return result
        time.sleep(0.05)
    sys.exit(f"Waited in vain for {what}; {explain()}")


def press(*keys):
    subprocess.run(["xdotool", "key", "--delay", "50", *keys], check=True)


def find_application(name):
    for application in pyatspi.Registry.getDesktop(0):
        if application and application.name == name:
            return application
    return None


def start(*command):
    # A program that starts before the bus is up is never heard of.
    wait_for("the bus", lambda: pyatspi.Registry.getDesktop(0).childCount >= 0)
    return subprocess.Popen(command)
