#!/usr/bin/env python3
"""Fails if a shared library defines a symbol that may be one of a host's own."""

import re
import subprocess
import sys

# Classes and functions that hosts know, namespaces of ours, and what the compiler puts beside
# inline functions of others.
KNOWN = re.compile(
    r"^(?:non-virtual thunk to |virtual thunk to |vtable for |VTT for |typeinfo for "
    r"|typeinfo name for |guard variable for )?"
    r"(?:decltype .* |[\w:<>,*&() ]+ )??"
    r"(?:CNodeBrowser|CNodePalette|ItemTagsRegistry|CRenameCompoundDialog"
    r"|CTarnoCompoundCreateDialog|CItemTagsEditorDialog|CTypeSelector|SplitString"
    r"|QStringToStdString|nodebrowser|palette|tarno|wek|qorm|std|boost|__gnu_cxx|Q[A-Z]\w+"
    r"|IRevisionControlPropertiesMgr|operator[<>]|qt_|q[A-Z])"
)
# Of the linker.
EDGES = {"__bss_start", "_edata", "_end", "_init", "_fini"}


def symbols(library):
    output = subprocess.run(
        ["nm", "--dynamic", "--defined-only", "--demangle", library],
        check=True, capture_output=True, text=True,
    ).stdout
    return {line.split(" ", 2)[2] for line in output.splitlines()} - EDGES


unknown = sorted(
    f"{library}: {name}"
    for library in sys.argv[1:]
    for name in symbols(library)
    if not KNOWN.match(name)
)
print("\n".join(unknown))
sys.exit(1 if unknown else 0)
