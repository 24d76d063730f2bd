"""A plug-in looks for its platform by one name: soname.py LIBRARY..."""
import os
import sys

from elf import dynamic
from report import finish

NAME = "libtvplatform.so.1"

finish([f"{library} calls itself {dynamic(library, 'SONAME')}, not {NAME}"
        for library in sys.argv[1:]
        if dynamic(library, "SONAME") != [NAME] or os.path.basename(os.path.realpath(library)) != NAME])
