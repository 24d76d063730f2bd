"""The plug-in draws with seven functions of cairo and asks neither files nor the environment: imports.py LIBRARY"""
import re
import subprocess
import sys

from report import finish

CAIRO = {"cairo_xlib_surface_create", "cairo_create", "cairo_set_source_rgba", "cairo_set_operator", "cairo_paint",
         "cairo_destroy", "cairo_surface_destroy"}
# What reaches the environment, files, other processes or libraries, the network, and the screen past cairo.
OUTSIDE = re.compile(r"(secure_)?getenv|f?open(at|dir)?(64)?|freopen(64)?|read|popen|system|exec.*|fork|dlopen|socket|"
                     r"connect|setlocale|environ|X[A-Z].*|.*(ifstream|ofstream|basic_filebuf).*")

lines = subprocess.check_output(["nm", "--dynamic", "--undefined-only", sys.argv[1]], text=True).splitlines()
imported = {line.split()[-1].split("@")[0] for line in lines}
cairo = {name for name in imported if name.startswith("cairo_")}
finish([f"{name} is used: the hole needs no more than {len(CAIRO)} functions of cairo"
        for name in sorted(cairo - CAIRO)]
       + [f"{name} is not used any more: take it off the list" for name in sorted(CAIRO - cairo)]
       + [f"{name} is used, but the plug-in has no configuration and leaves the screen to cairo"
          for name in sorted(imported) if OUTSIDE.fullmatch(name)])
