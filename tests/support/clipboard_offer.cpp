// Another application on the clipboard, for tests: offers the given types and bytes
// until it is told to stop (or someone else takes the clipboard).
//   clipboard_offer TYPE=VALUE [TYPE=VALUE ...]
// Prints "ready" once it owns the clipboard.
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <cstdio>

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    auto *data = new QMimeData;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        const qsizetype equals = argument.indexOf('=');
        if (equals <= 0)
            return 2;
        data->setData(QString::fromUtf8(argument.left(equals)), argument.mid(equals + 1));
    }
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(data, QClipboard::Clipboard);
    QObject::connect(clipboard, &QClipboard::dataChanged, &app, [clipboard] {
        if (!clipboard->ownsClipboard())
            QCoreApplication::quit();
    });
    std::puts("ready");
    std::fflush(stdout);
    return app.exec();
}
