// Runs under valgrind's callgrind, for benchmarks/measure: plug-in-cost compare|grow
#include <cstdio>
#include <string>

#include "benchmarks/library/Floor.h"
#include "benchmarks/library/Instances.h"
#include "benchmarks/native/BareBrowser.h"
#include "benchmarks/native/Benchmarks.h"
#include "platform/null/NullPlatform.h"

namespace benchmarks {

NPNetscapeFuncs& Browser() { return BareBrowser::Functions(); }

}  // namespace benchmarks

// The plug-in's.
extern "C" NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);

using namespace benchmarks;

int main(int argc, char** argv) {
    const std::string what = argc == 2 ? argv[1] : "";
    if (what != "compare" && what != "grow") {
        std::fprintf(stderr, "plug-in-cost: say 'compare' or 'grow'.\n");
        return 2;
    }
    nullplatform::SetDebugLevel(-1);
    NPPluginFuncs object{};
    object.size = sizeof object;
    NP_Initialize(&Browser(), &object);
    if (what == "compare")
        Compare(object, Instances<Floor>::Functions());
    else
        Grow(object);
    return 0;
}
