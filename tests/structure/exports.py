"""The plug-in exports its four entry points and nothing else: exports.py npvideobroadcast.so"""
import subprocess
import sys

from report import finish

EXPECTED = {"NP_Initialize", "NP_GetValue", "NP_GetMIMEDescription", "NP_Shutdown"}

lines = subprocess.check_output(["nm", "--dynamic", "--defined-only", sys.argv[1]], text=True).splitlines()
exported = {line.split()[-1].split("@")[0] for line in lines}
finish([f"{name} is exported, but hidden it should be" for name in sorted(exported - EXPECTED)]
       + [f"{name} is not exported" for name in sorted(EXPECTED - exported)])
