#pragma once

#include <QString>

namespace ledgewise {

// Chooses one file, modally; empty when cancelled.
class FileChooser
{
public:
    virtual ~FileChooser() = default;
    virtual QString chooseFile(const QString &message, const QString &startFolder, const QString &nameFilter) = 0;
};

// The desktop's file chooser (the portal's where the desktop offers one).
class DesktopFileChooser final : public FileChooser
{
public:
    QString chooseFile(const QString &message, const QString &startFolder, const QString &nameFilter) override;
};

} // namespace ledgewise
