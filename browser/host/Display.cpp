#include "browser/host/Display.h"

#include <X11/Xlib.h>

namespace browser {

struct DisplayProbe::Connection {
    Display* display = XOpenDisplay(nullptr);

    ~Connection() {
        if (display != nullptr) {
            XCloseDisplay(display);
        }
    }
};

DisplayProbe::DisplayProbe() : m_connection(std::make_unique<Connection>()) {}

DisplayProbe::~DisplayProbe() = default;

bool DisplayProbe::HasDisplay() const {
    return m_connection->display != nullptr;
}

}  // namespace browser
