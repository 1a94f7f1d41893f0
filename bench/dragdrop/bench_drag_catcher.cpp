// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// How long the main thread is held while a big drag passes over a surface and is
// dropped: a 50 MB text, 10,000 files, a 4,000-character file name. The drag events
// are sent to a window with the catcher as the window system sends them (the other
// application's data already in this process, so only our own reading is timed), and
// the handler reads the summary as the drop view does. Prints the longest hold of
// each event kind.
#include "dragdrop/drag_catcher.h"

#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace ledgewise;

namespace {

class SummaryReader final : public QObject, public DragDestinationHandling
{
public:
    void dragDidEnter(std::shared_ptr<const DropPayload> payload) override { summary = payload->summary(); }
    void dragDidExit() override { }
    void dragDidDrop(std::shared_ptr<const DropPayload> payload) override
    {
        summary = payload->summary();
        dropped = std::move(payload);
    }
    QString summary;
    std::shared_ptr<const DropPayload> dropped;
};

double heldMs(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.nsecsElapsed() / 1e6;
}

void run(const char *name, const QMimeData &data)
{
    DragCatcher catcher;
    SummaryReader reader;
    catcher.setHandler(&reader, &reader);
    QWindow window;
    window.resize(268, 340);
    catcher.setPillCornerRadius(24);
    window.installEventFilter(&catcher);
    const QPoint centre(134, 170);
    const auto actions = Qt::CopyAction | Qt::MoveAction;

    const double enter = heldMs([&] {
        QDragEnterEvent event(centre, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &event);
    });
    double move = 0;
    for (int i = 0; i < 20; ++i) {
        move = std::max(move, heldMs([&] {
            QDragMoveEvent event(centre + QPoint(i, 0), actions, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&window, &event);
        }));
    }
    const double drop = heldMs([&] {
        QDropEvent event(centre + QPoint(19, 0), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &event);
    });
    std::printf("%-28s enter %7.1f ms   longest move %5.2f ms   drop %7.1f ms   summary %lld characters\n", name, enter,
        move, drop, static_cast<long long>(reader.summary.size()));
    // A dropped text is converted whole only when an action (Copy, Share, Send) asks for
    // it, once; Save converts its own copy on its worker.
    if (reader.dropped && reader.dropped->text) {
        const double convert = heldMs([&] { (void)reader.dropped->text->size(); });
        std::printf("%-28s first action converts the whole text in %.1f ms\n", "", convert);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    std::printf("Drag catcher: main-thread hold per drag event (in-process data)\n");

    QMimeData text;
    text.setData(QStringLiteral("text/plain"), QByteArray(50 * 1024 * 1024, 'x'));
    run("50 MB text", text);

    QList<QUrl> files;
    for (int i = 0; i < 10000; ++i)
        files << QUrl::fromLocalFile(QStringLiteral("/home/me/photos/IMG_%1.jpg").arg(i, 5, 10, QLatin1Char('0')));
    QMimeData many;
    many.setUrls(files);
    run("10,000 files", many);

    QMimeData longName;
    longName.setUrls({ QUrl::fromLocalFile(QStringLiteral("/tmp/") + QString(4000, QLatin1Char('n'))) });
    run("4,000-character file name", longName);
    return 0;
}
