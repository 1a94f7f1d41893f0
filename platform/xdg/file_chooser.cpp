#include "platform/xdg/file_chooser.h"

#include <QFileDialog>

namespace ledgewise {

QString DesktopFileChooser::chooseFile(const QString &message, const QString &startFolder, const QString &nameFilter)
{
    return QFileDialog::getOpenFileName(nullptr, message, startFolder, nameFilter);
}

} // namespace ledgewise
