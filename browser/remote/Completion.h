// What a shell offers behind "tv-remote": commands, and what their usages say of their arguments.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace browser {

struct CommandText {
    QString name;
    QString argument;  // its usage, such as "in|out" or "KEY"; empty: none
    QString sentence;  // what it does
};

struct Vocabulary {
    std::vector<CommandText> commands;
    QStringList keys;
    std::function<QStringList()> services;  // asked only where a service is named
};

// The candidates for the last of the words, which may be empty; `words` begins behind the program's name.
QStringList Complete(const QStringList& words, const Vocabulary& vocabulary);

}  // namespace browser
