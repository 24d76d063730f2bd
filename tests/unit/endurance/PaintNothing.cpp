// cairo's functions for a program that has no display.
#include <cairo/cairo-xlib.h>

cairo_surface_t* cairo_xlib_surface_create(Display*, Drawable, Visual*, int, int) { return nullptr; }
cairo_t* cairo_create(cairo_surface_t*) { return nullptr; }
void cairo_set_source_rgba(cairo_t*, double, double, double, double) {}
void cairo_set_operator(cairo_t*, cairo_operator_t) {}
void cairo_paint(cairo_t*) {}
void cairo_destroy(cairo_t*) {}
void cairo_surface_destroy(cairo_surface_t*) {}
