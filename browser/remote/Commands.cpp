#include "browser/remote/Commands.h"

#include <QStringList>
#include <array>

namespace browser {

namespace {

using Failure = RemoteTarget::Failure;

struct CommandRow {
    const char* name;
    const char* argument;  // null: the command takes none
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

QString Help(RemoteTarget&, const QString&);

constexpr std::array<CommandRow, 7> kCommands{{
    {"key", "NAME", [](RemoteTarget& target, const QString& name) { return Answer(target.PressKey(name)); }},
    {"channel", "N|next|previous",
     [](RemoteTarget& target, const QString& channel) { return Answer(target.SelectChannel(channel)); }},
    {"open", "URL",
     [](RemoteTarget& target, const QString& url) {
         target.OpenUrl(url);
         return Ok();
     }},
    {"screenshot", "FILE",
     [](RemoteTarget& target, const QString& file) { return Answer(target.WriteScreenshot(file)); }},
    {"evaluate", "SCRIPT",
     [](RemoteTarget& target, const QString& script) { return Ok(target.EvaluateScript(script)); }},
    {"quit", nullptr,
     [](RemoteTarget& target, const QString&) {
         target.Quit(0);
         return Ok();
     }},
    {"help", nullptr, Help},
}};

QString Usage(const CommandRow& command) {
    const QString name = QLatin1String(command.name);
    return command.argument != nullptr ? name + QLatin1Char(' ') + QLatin1String(command.argument) : name;
}

QString Help(RemoteTarget& target, const QString&) {
    QStringList usages;
    for (const CommandRow& command : kCommands) {
        usages += Usage(command);
    }
    for (const television::StimulusUse& use : target.Stimuli()) {
        usages += QString::fromStdString(use.argument.empty() ? use.name : use.name + " " + use.argument);
    }
    return Ok(usages.join(QStringLiteral("; ")));
}

}  // namespace

QString RunCommand(RemoteTarget& target, const QString& line) {
    const QString text = line.trimmed();
    const int blank = text.indexOf(QLatin1Char(' '));
    const QString name = text.left(blank);
    const QString argument = blank < 0 ? QString() : text.mid(blank).trimmed();
    for (const CommandRow& command : kCommands) {
        if (name != QLatin1String(command.name)) {
            continue;
        }
        if (argument.isEmpty() != (command.argument == nullptr)) {
            return Error(QStringLiteral("Write it as: ") + Usage(command));
        }
        return command.run(target, argument);
    }
    for (const television::StimulusUse& use : target.Stimuli()) {
        if (name == QString::fromStdString(use.name)) {
            return Answer(target.Stimulate(text));
        }
    }
    return Error(QStringLiteral("There is no command \"%1\"; \"help\" lists them.").arg(name));
}

}  // namespace browser
