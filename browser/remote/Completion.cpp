#include "browser/remote/Completion.h"

#include <algorithm>

namespace browser {

namespace {

// The words in capital letters that a usage may have, and what they stand for.
bool NamesService(const QString& word) {
    return word == QLatin1String("SERVICE") || word == QLatin1String("CHANNEL");
}

QStringList Meanings(const QString& alternative, const Vocabulary& vocabulary) {
    if (alternative == QLatin1String("KEY")) {
        return vocabulary.keys;
    }
    if (NamesService(alternative)) {
        return vocabulary.services();
    }
    const bool isLiteral = !alternative.isEmpty() && alternative == alternative.toLower();
    return isLiteral ? QStringList{alternative} : QStringList();
}

QString WithoutBrackets(QString usage) {
    return usage.remove(QLatin1Char('[')).remove(QLatin1Char(']'));
}

// What may stand at a place of a command's argument.
QStringList Arguments(const QString& name, int place, const Vocabulary& vocabulary) {
    const auto command = std::find_if(vocabulary.commands.begin(), vocabulary.commands.end(),
                                      [&](const CommandText& candidate) { return candidate.name == name; });
    if (command == vocabulary.commands.end()) {
        return {};
    }
    QStringList meanings;
    const QString usage = WithoutBrackets(command->argument).section(QLatin1Char(' '), place, place);
    for (const QString& alternative : usage.split(QLatin1Char('|'))) {
        meanings += Meanings(alternative, vocabulary);
    }
    return meanings;
}

QStringList Beginnings(const Vocabulary& vocabulary) {
    QStringList names{QStringLiteral("play"), QStringLiteral("--help"), QStringLiteral("--json"),
                      QStringLiteral("--remote")};
    for (const CommandText& command : vocabulary.commands) {
        names += command.name;
    }
    return names;
}

// Behind the options. Less than no word is left where the value of an option is being written.
QStringList WithoutOptions(QStringList words) {
    while (words.size() > 1 && words.first().startsWith(QLatin1Char('-'))) {
        words = words.mid(words.first() == QLatin1String("--remote") ? 2 : 1);
    }
    return words;
}

}  // namespace

QStringList Complete(const QStringList& all, const Vocabulary& vocabulary) {
    const QStringList words = WithoutOptions(all);
    if (words.isEmpty()) {
        return {};
    }
    QStringList candidates = words.size() == 1 ? Beginnings(vocabulary)
                                               : Arguments(words.first(), words.size() - 2, vocabulary);
    const auto unfit = [&](const QString& candidate) { return !candidate.startsWith(words.last(), Qt::CaseInsensitive); };
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), unfit), candidates.end());
    candidates.sort();
    return candidates;
}

}  // namespace browser
