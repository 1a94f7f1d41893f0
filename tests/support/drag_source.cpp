// Another application to drag from, for tests: a small window at the position given
// that starts a drag of the given text when the mouse is pressed on it, and prints
// how the drag ended ("copy" or "ignored").
//   drag_source X Y TEXT
#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QRasterWindow>
#include <QPainter>

#include <cstdio>

namespace {

class Source : public QRasterWindow
{
public:
    explicit Source(QString text) : m_text(std::move(text)) {}

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(QRect(QPoint(), size()), Qt::darkGreen); }
    void mousePressEvent(QMouseEvent *) override
    {
        auto *drag = new QDrag(this);
        auto *data = new QMimeData;
        data->setText(m_text);
        drag->setMimeData(data);
        const Qt::DropAction result = drag->exec(Qt::CopyAction | Qt::MoveAction);
        std::printf("%s\n", result == Qt::CopyAction ? "copy" : "ignored");
        std::fflush(stdout);
    }

private:
    QString m_text;
};

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    if (argc < 4)
        return 2;
    Source source(QString::fromLocal8Bit(argv[3]));
    source.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
    source.setTitle(QStringLiteral("drag source"));
    source.setGeometry(QString::fromLatin1(argv[1]).toInt(), QString::fromLatin1(argv[2]).toInt(), 100, 100);
    source.show();
    std::puts("ready");
    std::fflush(stdout);
    return app.exec();
}
