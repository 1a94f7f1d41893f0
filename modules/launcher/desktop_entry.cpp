// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/launcher/desktop_entry.h"

#include <QHash>

namespace ledgewise::DesktopEntry {

namespace {

// The escapes of a string value; any other backslash is kept for the Exec quoting
// rules to read.
QString unescaped(QStringView value)
{
    QString out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c != QLatin1Char('\\') || i + 1 == value.size()) {
            out += c;
            continue;
        }
        switch (value.at(i + 1).unicode()) {
        case 's':
            out += QLatin1Char(' ');
            break;
        case 'n':
            out += QLatin1Char('\n');
            break;
        case 't':
            out += QLatin1Char('\t');
            break;
        case 'r':
            out += QLatin1Char('\r');
            break;
        case '\\':
            out += QLatin1Char('\\');
            break;
        default:
            out += c;
            out += value.at(i + 1);
            break;
        }
        ++i;
    }
    return out;
}

// The keys to try for a translated value, best first.
QStringList localisedKeys(const QString &key, const QString &locale)
{
    QString language = locale;
    QString modifier;
    if (const qsizetype at = language.indexOf(QLatin1Char('@')); at >= 0) {
        modifier = language.mid(at);
        language.truncate(at);
    }
    if (const qsizetype dot = language.indexOf(QLatin1Char('.')); dot >= 0)
        language.truncate(dot);
    QString country;
    if (const qsizetype underscore = language.indexOf(QLatin1Char('_')); underscore >= 0) {
        country = language.mid(underscore);
        language.truncate(underscore);
    }
    QStringList keys;
    const auto add = [&](const QString &suffix) {
        const QString candidate = key + QLatin1Char('[') + suffix + QLatin1Char(']');
        if (!keys.contains(candidate))
            keys << candidate;
    };
    if (!language.isEmpty() && language != QLatin1String("C") && language != QLatin1String("POSIX")) {
        if (!country.isEmpty() && !modifier.isEmpty())
            add(language + country + modifier);
        if (!country.isEmpty())
            add(language + country);
        if (!modifier.isEmpty())
            add(language + modifier);
        add(language);
    }
    keys << key;
    return keys;
}

bool isSpace(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n');
}

} // namespace

std::optional<Entry> parse(const QString &text, const QString &locale)
{
    QHash<QString, QString> values;
    bool inGroup = false;
    bool found = false;
    for (QStringView line : QStringView(text).split(QLatin1Char('\n'))) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line == QLatin1String("[Desktop Entry]");
            found = found || inGroup;
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (!inGroup || equals < 0)
            continue;
        // Spaces around "=" are not part of the key or the value.
        const QString key = line.left(equals).trimmed().toString();
        if (!values.contains(key))
            values.insert(key, unescaped(line.mid(equals + 1).trimmed()));
    }
    if (!found)
        return std::nullopt;

    Entry entry;
    for (const QString &key : localisedKeys(QStringLiteral("Name"), locale)) {
        if (values.contains(key)) {
            entry.name = values.value(key);
            break;
        }
    }
    entry.exec = values.value(QStringLiteral("Exec"));
    entry.icon = values.value(QStringLiteral("Icon"));
    entry.workingDirectory = values.value(QStringLiteral("Path"));
    const QString terminal = values.value(QStringLiteral("Terminal"));
    entry.terminal = terminal == QLatin1String("true") || terminal == QLatin1String("1");
    return entry;
}

QString messagesLocale()
{
    for (const char *variable : { "LC_ALL", "LC_MESSAGES", "LANG" }) {
        const QString value = qEnvironmentVariable(variable);
        if (value.isEmpty())
            continue;
        QString locale = value;
        const qsizetype dot = locale.indexOf(QLatin1Char('.'));
        if (dot >= 0) {
            const qsizetype at = locale.indexOf(QLatin1Char('@'), dot);
            locale = locale.left(dot) + (at >= 0 ? locale.mid(at) : QString());
        }
        return locale;
    }
    return QStringLiteral("C");
}

std::optional<QStringList> execArguments(const Entry &entry, const QString &entryPath)
{
    const QString &exec = entry.exec;
    QStringList arguments;
    QString current;
    bool inArgument = false; // something, even an empty pair of quotes, was written
    bool quoted = false; // the argument has a quoted part
    bool fieldCode = false; // the argument has a field code
    bool inQuotes = false;

    const auto finish = [&] {
        // A field code standing for files that are not there leaves no empty argument.
        if (inArgument && !(fieldCode && !quoted && current.isEmpty()))
            arguments << current;
        current.clear();
        inArgument = quoted = fieldCode = false;
    };

    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec.at(i);
        const QChar next = i + 1 < exec.size() ? exec.at(i + 1) : QChar();
        if (c == QLatin1Char('%')) {
            ++i;
            inArgument = true;
            switch (next.unicode()) {
            case '%':
                current += QLatin1Char('%');
                break;
            case 'c':
                current += entry.name;
                break;
            case 'k':
                current += entryPath;
                break;
            case 'i': {
                const bool whole
                    = current.isEmpty() && !quoted && !inQuotes && (i + 1 == exec.size() || isSpace(exec.at(i + 1)));
                if (whole && !entry.icon.isEmpty())
                    arguments << QStringLiteral("--icon") << entry.icon;
                fieldCode = true;
                break;
            }
            default: // %f %F %u %U, the deprecated codes, and any unknown one
                fieldCode = true;
                break;
            }
            continue;
        }
        if (inQuotes) {
            if (c == QLatin1Char('"')) {
                inQuotes = false;
            } else if (c == QLatin1Char('\\') && QStringView(u"\"`$\\").contains(next) && !next.isNull()) {
                current += next;
                ++i;
            } else {
                current += c;
            }
            continue;
        }
        if (isSpace(c)) {
            finish();
        } else if (c == QLatin1Char('"')) {
            inQuotes = inArgument = quoted = true;
        } else if (c == QLatin1Char('\\') && !next.isNull()) {
            current += next;
            inArgument = true;
            ++i;
        } else {
            current += c;
            inArgument = true;
        }
    }
    if (inQuotes)
        return std::nullopt;
    finish();
    if (arguments.isEmpty() || arguments.constFirst().isEmpty())
        return std::nullopt;
    return arguments;
}

std::optional<ProgramCommand> command(const Entry &entry, const QString &entryPath)
{
    const auto arguments = execArguments(entry, entryPath);
    if (!arguments)
        return std::nullopt;
    return ProgramCommand { arguments->constFirst(), arguments->mid(1), entry.workingDirectory, entry.terminal };
}

} // namespace ledgewise::DesktopEntry
