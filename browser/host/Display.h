// Whether there is an X display to run on.
#pragma once

#include <memory>

namespace browser {

// Asked before Qt is: Qt would end the process with a text of its own. Plug-ins paint with X11, so no other of Qt's
// platforms will do. The connection is kept until Qt has its own, because virtual displays start anew when the last
// one is closed.
class DisplayProbe {
public:
    DisplayProbe();
    ~DisplayProbe();

    bool HasDisplay() const;

private:
    struct Connection;
    std::unique_ptr<Connection> m_connection;
};

}  // namespace browser
