// Cure: a script that runs long is left alone.
//
// After ten seconds QWebPage asks the viewer in a message box whether to stop the script; a television has no such box,
// and a run without a viewer would wait for ever.
#pragma once

#include <QWebPage>

namespace browser {

class PatientPage : public QWebPage {
    Q_OBJECT

public:
    using QWebPage::QWebPage;

    bool shouldInterruptJavaScript() override { return false; }
};

}  // namespace browser
