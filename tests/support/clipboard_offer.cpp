// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Another application on the clipboard, for tests and benchmarks: offers the given
// types and bytes until someone else takes the clipboard (then it quits on its own), or
// until it is killed.
//   clipboard_offer TYPE=VALUE | TYPE<FILE [...]
// TYPE=VALUE offers VALUE as it is written; TYPE<FILE offers the bytes of FILE (for
// pictures and anything else a command line cannot carry).
// Prints "ready" once it owns the clipboard.
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>

#include <QMap>

#include <cstdio>
#include <memory>

namespace {

// Offers exactly the bytes it was given. QMimeData itself would parse a URI list into
// URLs and write them back normalised ("HTTP://" becomes "http://"), which is not what
// many applications put on the clipboard.
class RawMimeData final : public QMimeData
{
public:
    void offer(const QString &type, const QByteArray &bytes)
    {
        if (!m_bytes.contains(type))
            m_types.append(type);
        m_bytes.insert(type, bytes);
    }
    QStringList formats() const override { return m_types; }
    bool hasFormat(const QString &type) const override { return m_bytes.contains(type); }

protected:
    QVariant retrieveData(const QString &type, QMetaType) const override
    {
        const auto found = m_bytes.constFind(type);
        return found == m_bytes.cend() ? QVariant() : QVariant(*found);
    }

private:
    QStringList m_types;
    QMap<QString, QByteArray> m_bytes;
};

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    auto data = std::make_unique<RawMimeData>();
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        const qsizetype equals = argument.indexOf('=');
        const qsizetype from = argument.indexOf('<');
        if (equals > 0 && (from < 0 || equals < from)) {
            data->offer(QString::fromUtf8(argument.left(equals)), argument.mid(equals + 1));
        } else if (from > 0) {
            QFile file(QFile::decodeName(argument.mid(from + 1)));
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", argument.mid(from + 1).constData());
                return 2;
            }
            data->offer(QString::fromUtf8(argument.left(from)), file.readAll());
        } else {
            return 2;
        }
    }
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(data.release(), QClipboard::Clipboard);
    if (!clipboard->ownsClipboard())
        return 1;
    QObject::connect(clipboard, &QClipboard::dataChanged, &app, [clipboard] {
        if (!clipboard->ownsClipboard())
            QCoreApplication::quit();
    });
    std::puts("ready");
    std::fflush(stdout);
    return app.exec();
}
