#include "platform/xdg/file_chooser.h"

#include <QFileDialog>

namespace ledgewise {

DesktopFileChooser::~DesktopFileChooser()
{
    // Closed without an answer: whoever asked may be going away too.
    delete m_dialog.data();
}

QFileDialog *DesktopFileChooser::openDialog() const
{
    return qobject_cast<QFileDialog *>(m_dialog.data());
}

void DesktopFileChooser::chooseFile(const QString &message, const QString &startFolder, const QString &nameFilter,
                                    QObject *context, Answer answer)
{
    // Only one chooser at a time: the earlier one is answered as cancelled, and goes.
    if (QFileDialog *earlier = openDialog())
        earlier->reject();
    auto *dialog = new QFileDialog(nullptr, message, startFolder, nameFilter);
    dialog->setObjectName(QStringLiteral("ledgewiseFileChooser"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    // Modal as a chooser should be, but shown, not exec()'d: the caller's handler
    // returns at once and the answer arrives through `finished`.
    dialog->setWindowModality(Qt::ApplicationModal);
    m_dialog = dialog;
    // Answered or not, a finished chooser is no longer ours to cancel, and goes. First,
    // so that an answer that asks again finds no chooser open. `this` outlives the
    // dialog (the destructor deletes it), so the handler may reach it.
    QObject::connect(dialog, &QDialog::finished, dialog, [this, dialog] {
        if (m_dialog == dialog)
            m_dialog.clear();
        dialog->deleteLater();
    });
    // Tied to `context`: a caller gone meanwhile is never called.
    QObject::connect(dialog, &QDialog::finished, context ? context : dialog,
                     [dialog, answer = std::move(answer)](int result) {
                         const QStringList chosen = dialog->selectedFiles();
                         answer(result == QDialog::Accepted && !chosen.isEmpty() ? chosen.constFirst() : QString());
                     },
                     Qt::SingleShotConnection);
    dialog->show();
}

} // namespace ledgewise
