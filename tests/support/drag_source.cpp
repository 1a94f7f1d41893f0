// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Another application to drag from, for tests: a small window at the position given
// that starts a drag of the given text when the mouse is pressed on it, and prints
// how the drag ended ("copy" or "ignored"). With a MIME type, the text travels as that
// type alone.
//   drag_source X Y TEXT [MIME-TYPE]
#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>

#include <cstdio>

namespace {

class Source : public QRasterWindow
{
public:
    Source(QString text, QString type)
        : m_text(std::move(text))
        , m_type(std::move(type))
    { }

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(QRect(QPoint(), size()), Qt::darkGreen); }
    void mousePressEvent(QMouseEvent *) override
    {
        auto *drag = new QDrag(this);
        auto *data = new QMimeData;
        if (m_type.isEmpty())
            data->setText(m_text);
        else
            data->setData(m_type, m_text.toUtf8());
        drag->setMimeData(data);
        const Qt::DropAction result = drag->exec(Qt::CopyAction | Qt::MoveAction);
        std::printf("%s\n", result == Qt::CopyAction ? "copy" : "ignored");
        std::fflush(stdout);
    }

private:
    QString m_text;
    QString m_type;
};

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    if (argc < 4)
        return 2;
    Source source(QString::fromLocal8Bit(argv[3]), argc > 4 ? QString::fromLatin1(argv[4]) : QString());
    source.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
    source.setTitle(QStringLiteral("drag source"));
    source.setGeometry(QString::fromLatin1(argv[1]).toInt(), QString::fromLatin1(argv[2]).toInt(), 100, 100);
    source.show();
    std::puts("ready");
    std::fflush(stdout);
    return app.exec();
}
