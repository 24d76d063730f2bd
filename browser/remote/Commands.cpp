#include "browser/remote/Commands.h"

#include <QJsonDocument>
#include <QStringList>
#include <algorithm>
#include <array>

namespace browser {

namespace {

using Failure = RemoteTarget::Failure;

struct CommandRow {
    const char* name;
    const char* argument;  // null: the command takes none; in brackets: it may be left out
    const char* sentence;
    QString (*run)(RemoteTarget& target, const QString& argument);
};

QString Ok(const QString& text = {}) {
    return text.isEmpty() ? QStringLiteral("ok") : QStringLiteral("ok ") + text;
}

QString Error(const QString& sentence) {
    return QStringLiteral("error ") + sentence;
}

QString Answer(const Failure& failure) {
    return failure ? Error(*failure) : Ok();
}

QString Text(const QJsonDocument& json) {
    return QString::fromUtf8(json.toJson(QJsonDocument::Compact));
}

QString Programmes(RemoteTarget& target, const QString& service) {
    const auto programmes = target.Programmes(service);
    return programmes ? Ok(Text(QJsonDocument(*programmes)))
                      : Error(service.isEmpty() ? QStringLiteral("The television shows no channel.")
                                                : QStringLiteral("There is no channel \"%1\".").arg(service));
}

QString Help(RemoteTarget& target, const QString&);
QString Json(RemoteTarget& target, const QString& line);

constexpr std::array<CommandRow, 11> kCommands{{
    {"key", "KEY", "press a key of the remote control",
     [](RemoteTarget& target, const QString& name) { return Answer(target.PressKey(name)); }},
    {"channel", "NUMBER|SERVICE|next|previous", "change the channel, as the viewer does",
     [](RemoteTarget& target, const QString& channel) { return Answer(target.SelectChannel(channel)); }},
    {"open", "URL", "open another page",
     [](RemoteTarget& target, const QString& url) {
         target.OpenUrl(url);
         return Ok();
     }},
    {"screenshot", "FILE", "write the screen, picture and page, into an image file",
     [](RemoteTarget& target, const QString& file) { return Answer(target.WriteScreenshot(file)); }},
    {"evaluate", "SCRIPT", "run a script in the page and answer with its value",
     [](RemoteTarget& target, const QString& script) { return Ok(target.EvaluateScript(script)); }},
    {"status", nullptr, "answer with what the television shows and does, as JSON",
     [](RemoteTarget& target, const QString&) { return Ok(Text(QJsonDocument(target.Status()))); }},
    {"services", nullptr, "answer with the channel list, as JSON",
     [](RemoteTarget& target, const QString&) { return Ok(Text(QJsonDocument(target.Services()))); }},
    {"programmes", "[NUMBER|SERVICE]", "answer with a channel's present and following programme, as JSON", Programmes},
    {"json", "LINE", "do what the line says and answer with a JSON object", Json},
    {"quit", nullptr, "end the TV browser",
     [](RemoteTarget& target, const QString&) {
         target.Quit(0);
         return Ok();
     }},
    {"help", nullptr, "list all these commands", Help},
}};

QString Usage(const CommandText& command) {
    return command.argument.isEmpty() ? command.name : command.name + QLatin1Char(' ') + command.argument;
}

QString Help(RemoteTarget& target, const QString&) {
    QStringList usages;
    for (const CommandText& command : CommandTexts(target.Stimuli())) {
        usages += Usage(command);
    }
    return Ok(usages.join(QStringLiteral("; ")));
}

QString NameIn(const QString& line) {
    return line.section(QLatin1Char(' '), 0, 0);
}

// An answer's text as a value: what is no JSON is a text.
QJsonValue ValueOf(const QString& text) {
    const QJsonDocument json = QJsonDocument::fromJson(('[' + text + ']').toUtf8());
    const QJsonArray values = json.array();
    return values.size() == 1 ? values.first() : QJsonValue(text);
}

QString Json(RemoteTarget& target, const QString& line) {
    const bool again = NameIn(line) == QLatin1String("json");
    const QString answer = again ? Error(QStringLiteral("One \"json\" is enough.")) : RunCommand(target, line);
    const QString text = answer.section(QLatin1Char(' '), 1);
    QJsonObject object{{QStringLiteral("ok"), NameIn(answer) == QLatin1String("ok")}};
    if (NameIn(answer) != QLatin1String("ok")) {
        object.insert(QStringLiteral("error"), text);
    } else if (!text.isEmpty()) {
        object.insert(QStringLiteral("value"), ValueOf(text));
    }
    return Text(QJsonDocument(object));
}

}  // namespace

std::vector<CommandText> CommandTexts(const std::vector<television::StimulusUse>& stimuli) {
    std::vector<CommandText> texts;
    for (const CommandRow& command : kCommands) {
        texts.push_back({QString::fromLatin1(command.name), QString::fromLatin1(command.argument),
                         QString::fromLatin1(command.sentence)});
    }
    for (const television::StimulusUse& use : stimuli) {
        texts.push_back({QString::fromStdString(use.name), QString::fromStdString(use.argument),
                         QString::fromStdString(use.meaning)});
    }
    return texts;
}

std::optional<QString> FaultOf(const QString& line, const std::vector<CommandText>& commands) {
    const QString text = line.trimmed();
    const QString name = NameIn(text);
    const auto command = std::find_if(commands.begin(), commands.end(),
                                      [&](const CommandText& candidate) { return candidate.name == name; });
    if (command == commands.end()) {
        return QStringLiteral("There is no command \"%1\"; \"help\" lists them.").arg(name);
    }
    const bool isOptional = command->argument.startsWith(QLatin1Char('['));
    const bool hasArgument = text != name;
    return isOptional || hasArgument != command->argument.isEmpty()
               ? std::nullopt
               : std::optional(QStringLiteral("Write it as: ") + Usage(*command));
}

QString RunCommand(RemoteTarget& target, const QString& line) {
    if (const auto fault = FaultOf(line, CommandTexts(target.Stimuli()))) {
        return Error(*fault);
    }
    const QString text = line.trimmed();
    const QString argument = text.section(QLatin1Char(' '), 1).trimmed();
    for (const CommandRow& command : kCommands) {
        if (NameIn(text) == QLatin1String(command.name)) {
            return command.run(target, argument);
        }
    }
    return Answer(target.Stimulate(text));
}

}  // namespace browser
