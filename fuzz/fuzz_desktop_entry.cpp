// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A Desktop Entry file as any program may have installed it: the first line is the
// locale to read it in, the rest the file. Parsed, its Exec line split, never a crash;
// a split line always names a program.
#include "modules/launcher/desktop_entry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace ledgewise;
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype lineEnd = input.indexOf(QLatin1Char('\n'));
    const QString locale = lineEnd < 0 ? QString() : input.left(lineEnd);
    const QString text = lineEnd < 0 ? input : input.mid(lineEnd + 1);
    const auto entry = DesktopEntry::parse(text, locale);
    if (!entry)
        return 0;
    const QString path = QStringLiteral("/usr/share/applications/org.example.App.desktop");
    const auto arguments = DesktopEntry::execArguments(*entry, path);
    if (arguments && (arguments->isEmpty() || arguments->first().isEmpty()))
        std::abort();
    const auto command = DesktopEntry::command(*entry, path);
    if (command.has_value() != arguments.has_value())
        std::abort();
    return 0;
}
