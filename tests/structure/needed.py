"""The plug-in needs the platform, cairo, X11 and the C++ library, and no fixed folders: needed.py npvideobroadcast.so"""
import sys

from elf import dynamic
from report import finish

EXPECTED = {"libtvplatform.so.1", "libcairo.so.2", "libstdc++.so.6", "libgcc_s.so.1", "libc.so.6"}
ALLOWED = EXPECTED | {"libX11.so.6", "libm.so.6"}

needed = set(dynamic(sys.argv[1], "NEEDED"))
finish([f"{library} is needed, which a television may not have" for library in sorted(needed - ALLOWED)]
       + [f"{library} is not needed any more: take it off the list" for library in sorted(EXPECTED - needed)]
       + [f"the library path {path} is built in" for tag in ("RPATH", "RUNPATH") for path in dynamic(sys.argv[1], tag)])
