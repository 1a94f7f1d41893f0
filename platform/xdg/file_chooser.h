// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QObject;
class QProcess;

namespace ledgewise {

// Chooses one file without blocking the caller: `chooseFile` shows the chooser and
// returns at once; the answer comes later, on the main thread, from the event loop.
// Nothing may run a nested event loop under a view's handler: the view can be torn
// down by whatever that loop delivers.
class FileChooser
{
public:
    // The chosen path; empty when cancelled.
    using Answer = std::function<void(const QString &path)>;

    virtual ~FileChooser() = default;
    // `answer` is called at most once, and never after `context` is gone.
    virtual void chooseFile(
        const QString &message, const QString &startFolder, const QString &nameFilter, QObject *context, Answer answer)
        = 0;
    // A chooser is on screen, waiting for the user.
    virtual bool isOpen() const = 0;
};

// The desktop's file chooser, shown by a small program of its own
// (ledgewise-file-chooser): the surfaces need no widgets library loaded for a dialog
// most sessions never open, and the chooser's platform plugins (the desktop's own
// dialog, or the portal's) cannot take the surfaces down with them. One at a time: a
// new request answers the one still open as cancelled; the destructor closes it
// unanswered.
class DesktopFileChooser final : public FileChooser
{
public:
    DesktopFileChooser();
    DesktopFileChooser(const DesktopFileChooser &) = delete;
    DesktopFileChooser &operator=(const DesktopFileChooser &) = delete;
    ~DesktopFileChooser() override;

    void chooseFile(const QString &message, const QString &startFolder, const QString &nameFilter, QObject *context,
        Answer answer) override;
    bool isOpen() const override;

    // Where the chooser program is: LEDGEWISE_FILE_CHOOSER when set, else beside this
    // program, else where it is installed.
    static QString programPath();

private:
    void finish(const QString &path);

    std::unique_ptr<QProcess> m_process;
    QPointer<QObject> m_context;
    bool m_hasContext = false;
    Answer m_answer;
};

} // namespace ledgewise
