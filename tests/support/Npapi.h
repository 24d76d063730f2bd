// NPAPI for tests. Xlib defines None and Bool as macros, which breaks gtest's headers when they come later.
#pragma once

#include <gtest/gtest.h>

#include "npapi/npfunctions.h"
