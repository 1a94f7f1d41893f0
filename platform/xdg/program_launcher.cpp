#include "platform/xdg/program_launcher.h"

#include <QProcess>

namespace ledgewise {

bool DetachedProgramLauncher::launch(const QString &program, const QStringList &arguments)
{
    return QProcess::startDetached(program, arguments);
}

} // namespace ledgewise
