// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Renders the one SVG icon into the PNG sizes of the hicolor theme, at build time, so
// desktops that want bitmaps get the same drawing.
// Usage: ledgewise-render-icon SVG OUTPUT_FOLDER NAME SIZE...
// writes OUTPUT_FOLDER/SIZExSIZE/apps/NAME.png for each size.

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char *argv[])
{
    // No display at build time: painting a drawing without text into an image needs
    // no window system.
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 5) {
        std::fputs("Usage: ledgewise-render-icon SVG OUTPUT_FOLDER NAME SIZE...\n", stderr);
        return 2;
    }
    QSvgRenderer renderer(arguments.at(1));
    if (!renderer.isValid()) {
        std::fprintf(stderr, "Cannot read the icon %s\n", qPrintable(arguments.at(1)));
        return 1;
    }
    for (const QString &sizeText : arguments.mid(4)) {
        bool isNumber = false;
        const int size = sizeText.toInt(&isNumber);
        if (!isNumber || size <= 0) {
            std::fprintf(stderr, "Not a size: %s\n", qPrintable(sizeText));
            return 2;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        painter.end();
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(arguments.at(2)).arg(size);
        const QString path = QStringLiteral("%1/%2.png").arg(folder, arguments.at(3));
        if (!QDir().mkpath(folder) || !image.save(path, "PNG")) {
            std::fprintf(stderr, "Cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
