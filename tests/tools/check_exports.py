#!/usr/bin/env python3
"""Compare the dynamic symbol table of the shared library with the header.

Every function the header declares must be exported, and nothing else may be:
no helper, no C++ symbol, no symbol of a static runtime.
"""
import re
import subprocess
import sys

lib, header = sys.argv[1], sys.argv[2]
out = subprocess.run(["nm", "-D", "--defined-only", lib], check=True,
                     capture_output=True, text=True).stdout
exported = set()
for line in out.splitlines():
    parts = line.split()
    if len(parts) >= 3 and parts[1] in "TtWwDdBbRrVviu":
        exported.add(parts[2])
text = re.sub(r"/\*.*?\*/", "", open(header).read(), flags=re.S)
declared = set(re.findall(r"\bORV_API\b[^;(]*?\b(orv\w+)\s*\(", text))

missing = sorted(declared - exported)
stray = sorted(exported - declared)
for name in missing:
    print("declared but not exported:", name)
for name in stray:
    print("exported but not declared:", name)
print(f"{len(declared)} declared, {len(exported)} exported")
sys.exit(1 if missing or stray or not declared else 0)
