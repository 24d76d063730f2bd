// The remote control's line protocol: one command a line, one line of answer, "ok ..." or "error ...". After "json" the
// answer is an object: {"ok":true}, {"ok":true,"value":...} or {"ok":false,"error":"..."}.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <optional>
#include <vector>

#include "browser/remote/Completion.h"
#include "television/Television.h"

namespace browser {

// What the commands act on. Each operation returns a sentence when it could not be done.
class RemoteTarget {
public:
    using Failure = std::optional<QString>;

    virtual Failure PressKey(const QString& name) = 0;
    // A channel number, a service's name, "next" or "previous".
    virtual Failure SelectChannel(const QString& channel) = 0;
    virtual void OpenUrl(const QString& url) = 0;
    virtual Failure WriteScreenshot(const QString& file) = 0;
    // The value as JSON.
    virtual QString EvaluateScript(const QString& script) = 0;
    virtual QJsonObject Status() = 0;
    virtual QJsonArray Services() = 0;
    // Of the service with this name or number, or of the one that is shown when it is empty; nothing when there is none.
    virtual std::optional<QJsonArray> Programmes(const QString& service) = 0;
    // What happens to the television: its names and uses, and one of them with its argument.
    virtual std::vector<television::StimulusUse> Stimuli() = 0;
    virtual Failure Stimulate(const QString& line) = 0;
    virtual void Quit(int status) = 0;

protected:
    ~RemoteTarget() = default;
};

// Carries out a line and returns the answer, without a line's end.
QString RunCommand(RemoteTarget& target, const QString& line);

// Every command, the stimuli among them.
std::vector<CommandText> CommandTexts(const std::vector<television::StimulusUse>& stimuli);
// What can be said against a line without carrying it out.
std::optional<QString> FaultOf(const QString& line, const std::vector<CommandText>& commands);

}  // namespace browser
