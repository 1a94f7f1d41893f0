#pragma once

#include <QString>
#include <QStringList>

namespace ledgewise {

// Starts a program, detached from Ledgewise so it outlives it.
class ProgramLauncher
{
public:
    virtual ~ProgramLauncher() = default;
    // False when it could not be started (not found, not executable).
    virtual bool launch(const QString &program, const QStringList &arguments) = 0;
};

class DetachedProgramLauncher final : public ProgramLauncher
{
public:
    bool launch(const QString &program, const QStringList &arguments) override;
};

} // namespace ledgewise
