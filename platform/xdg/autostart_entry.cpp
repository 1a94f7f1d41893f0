// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdg/autostart_entry.h"

#include <QList>

namespace ledgewise::AutostartEntry {

namespace {

// Characters that make the Desktop Entry rules want an Exec argument quoted.
bool needsQuoting(const QString &argument)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    for (const QChar c : argument) {
        if (reserved.contains(c))
            return true;
    }
    return argument.isEmpty();
}

} // namespace

QString execValue(const QString &program)
{
    QString argument;
    if (needsQuoting(program)) {
        // Inside quotes, these four are escaped with a backslash.
        argument += QLatin1Char('"');
        for (const QChar c : program) {
            if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\'))
                argument += QLatin1Char('\\');
            argument += c;
        }
        argument += QLatin1Char('"');
    } else {
        argument = program;
    }
    // Then the value is a string of the file: its own escapes (backslash, line breaks)
    // come on top, and a percent sign would start a field code.
    QString value;
    for (const QChar c : argument) {
        if (c == QLatin1Char('\\'))
            value += QStringLiteral("\\\\");
        else if (c == QLatin1Char('\n'))
            value += QStringLiteral("\\n");
        else if (c == QLatin1Char('\t'))
            value += QStringLiteral("\\t");
        else if (c == QLatin1Char('\r'))
            value += QStringLiteral("\\r");
        else if (c == QLatin1Char('%'))
            value += QStringLiteral("%%");
        else
            value += c;
    }
    return value;
}

QByteArray text(const QString &program)
{
    return QByteArrayLiteral("[Desktop Entry]\n"
                             "Type=Application\n"
                             "Name=Ledgewise\n"
                             "Comment=Clipboard history, Downloads, a timer and a launcher beside the notch\n"
                             "Exec=")
        + execValue(program).toUtf8()
        + QByteArrayLiteral("\n"
                            "Terminal=false\n"
                            "X-GNOME-Autostart-enabled=true\n");
}

bool isEnabled(const QByteArray &contents)
{
    bool inMainGroup = false;
    for (const QByteArray &rawLine : contents.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('[')) {
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        if (!inMainGroup || line.startsWith('#'))
            continue;
        const qsizetype equals = line.indexOf('=');
        if (equals < 0)
            continue;
        if (line.left(equals).trimmed() == "Hidden" && line.mid(equals + 1).trimmed() == "true")
            return false;
    }
    return true;
}

} // namespace ledgewise::AutostartEntry
