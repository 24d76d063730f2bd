// A line of the remote control's.
#include <QJsonDocument>

#include "browser/remote/Commands.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

// What a command was given, if any was carried out.
class Target : public browser::RemoteTarget {
public:
    Failure PressKey(const QString& name) override { return Given(name); }
    Failure SelectChannel(const QString& channel) override { return Given(channel); }
    void OpenUrl(const QString& url) override { Given(url); }
    Failure WriteScreenshot(const QString& file) override { return Given(file); }
    QString EvaluateScript(const QString& script) override {
        Given(script);
        return script;
    }
    QJsonObject Status() override { return {{"channel", 1}}; }
    QJsonArray Services() override { return {1, 2}; }
    std::optional<QJsonArray> Programmes(const QString& service) override {
        return service.size() > 3 ? std::nullopt : std::optional(QJsonArray());
    }
    std::vector<StimulusUse> Stimuli() override { return {{"aerial", "in|out", "pull it"}}; }
    Failure Stimulate(const QString& line) override { return Given(line); }
    void Quit(int status) override { Demand(status == 0, "the remote control ends the program in peace"); }

private:
    Failure Given(const QString& argument) {
        Demand(!argument.isEmpty() && argument == argument.trimmed(), "what a command needs, it is given");
        return argument.startsWith('x') ? Failure("No.") : std::nullopt;
    }
};

bool IsAnswer(const QString& answer) {
    if (answer.startsWith('{')) return QJsonDocument::fromJson(answer.toUtf8()).object().value("ok").isBool();
    return answer == "ok" || answer.startsWith("ok ") || answer.startsWith("error ");
}

}  // namespace

void Fuzz(std::span<const std::uint8_t> input) {
    Target target;
    const QString line = QString::fromUtf8(reinterpret_cast<const char*>(input.data()), static_cast<int>(input.size()));
    const QString answer = browser::RunCommand(target, line);
    Demand(IsAnswer(answer), "every line has its answer");
    Demand(line.contains('\n') || !answer.contains('\n'), "the answer is one line");
}

}  // namespace television::fuzz
