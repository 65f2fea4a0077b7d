#!/usr/bin/env python3
"""Fails if a library defines a symbol that may be one of a host's own.

Reads the names as the compiler encodes them: there the outermost namespace or class stands first,
after its length.
"""

import re
import subprocess
import sys

# Classes, functions and namespaces that hosts know, and templates of the compiler's library.
KNOWN = {
    "CEmbeddedHost", "CItemTagsEditorDialog", "CNodeBrowser", "CNodePalette",
    "CRenameCompoundDialog", "CTarnoCompoundCreateDialog", "CTypeSelector", "GetAllSignatures",
    "IKvTrackedSignal", "IRevisionControlPropertiesMgr", "IRevisionControlPropertiesMgr_Slot",
    "ItemTagsRegistry", "KvTrackedSlot", "KvTrackedSlotList", "ScsTask", "ScsUtils", "SplitString",
    "embeddedhost", "hostkit", "nodebrowser", "nodepalette", "qorm", "tarno", "wek", "wekGetSystem",
    "__gnu_cxx", "swap",
    "boost",  # its exceptions stay visible, so that they can be caught anywhere
}
# Headers that the embedded host is made with. A shared one has hidden what it takes from them.
PRIVATE = {"nlohmann", "simdjson"}
# Of the linker and the toolkit, and what the compiler keeps beside exceptions.
EDGES = re.compile(r"__bss_start|_edata|_end|_init|_fini|qt_version_tag|DW\.ref\.")
# A table, a guard, a call through a base or a local name comes before the name it belongs to.
OUTERMOST = re.compile(r"_Z(?:T[CISTV]|Th?n?\d+_|Tv\d+_n?\d+_|GV|GR|Z)*N?[rVKRO]*(\d+)")
# Of the standard library, and operators and types of functions, which belong to what they take.
OTHERS = re.compile(r"_Z(?:T[CISTV]|GV|Z)*N?[rVKRO]*(?:S[tabsiod]|[a-z][a-zA-Z]|P?F)")


def is_known(symbol, is_archive):
    found = OUTERMOST.match(symbol)
    if not found:
        return bool(EDGES.match(symbol) or OTHERS.match(symbol))
    name = symbol[found.end():found.end() + int(found.group(1))]
    return name in KNOWN or name[0] in "qQ" or (is_archive and name in PRIVATE)


def symbols(library):
    kind = "--extern-only" if library.endswith(".a") else "--dynamic"
    output = subprocess.run(
        ["nm", kind, "--defined-only", "--format=posix", library],
        check=True, capture_output=True, text=True,
    ).stdout
    return {line.split()[0] for line in output.splitlines() if not line.endswith(":")}


unknown = sorted(
    f"{library}: {symbol}"
    for library in sys.argv[1:]
    for symbol in symbols(library)
    if not is_known(symbol, library.endswith(".a"))
)
print("\n".join(unknown))
sys.exit(1 if unknown else 0)
