// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// ledgewise-file-chooser: shows the desktop's file chooser for Ledgewise and prints the
// chosen file's path (its bytes as the file system has them) on standard output.
// Exit status 0: a file was chosen; 1: cancelled; 2: bad arguments.
#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileDialog>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Shown to the user, and to screen readers, as Ledgewise's own dialog.
    QApplication::setApplicationName(QStringLiteral("Ledgewise"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.ledgewise.Ledgewise"));

    QCommandLineParser parser;
    // Not "-title" or "-name": Qt takes those for the X11 options of the same names.
    const QCommandLineOption title(
        QStringLiteral("message"), QStringLiteral("The chooser's title."), QStringLiteral("text"));
    const QCommandLineOption folder(
        QStringLiteral("start-folder"), QStringLiteral("The folder it opens in."), QStringLiteral("path"));
    const QCommandLineOption filter(
        QStringLiteral("name-filter"), QStringLiteral("Which files it offers."), QStringLiteral("filter"));
    parser.addOptions({ title, folder, filter });
    if (!parser.parse(QApplication::arguments())) {
        std::fprintf(stderr, "ledgewise-file-chooser: %s\n", qPrintable(parser.errorText()));
        return 2;
    }

    QFileDialog dialog(nullptr, parser.value(title), parser.value(folder), parser.value(filter));
    dialog.setObjectName(QStringLiteral("ledgewiseFileChooser"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.show();
    // Where no window manager hands out the keyboard, the chooser takes it: the file
    // name field is ready for typing the moment it shows.
    dialog.activateWindow();
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return 1;
    const QByteArray chosen = QFile::encodeName(dialog.selectedFiles().constFirst());
    std::fwrite(chosen.constData(), 1, size_t(chosen.size()), stdout);
    std::fputc('\n', stdout);
    return 0;
}
