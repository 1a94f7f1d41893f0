#pragma once

#include <QPointer>
#include <QString>

#include <functional>

class QFileDialog;
class QObject;

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
    virtual void chooseFile(const QString &message, const QString &startFolder, const QString &nameFilter,
                            QObject *context, Answer answer) = 0;
};

// The desktop's file chooser (the portal's where the desktop offers one), modal to the
// whole application but without a loop of its own. One at a time: a new request
// cancels the chooser still open; the destructor closes it unanswered.
class DesktopFileChooser final : public FileChooser
{
public:
    DesktopFileChooser() = default;
    DesktopFileChooser(const DesktopFileChooser &) = delete;
    DesktopFileChooser &operator=(const DesktopFileChooser &) = delete;
    ~DesktopFileChooser() override;

    void chooseFile(const QString &message, const QString &startFolder, const QString &nameFilter, QObject *context,
                    Answer answer) override;

    // The chooser on screen, if any.
    QFileDialog *openDialog() const;

private:
    // A QFileDialog; held as a QObject so that this header needs no widgets.
    QPointer<QObject> m_dialog;
};

} // namespace ledgewise
