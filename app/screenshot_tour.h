#pragma once

#include <QObject>
#include <QString>

namespace ledgewise {

// On a virtual display nobody can look at, Ledgewise shows what it draws by writing
// screenshots of the whole screen into a folder (LEDGEWISE_SCREENSHOT_DIR) and saying
// where they are.
class ScreenshotTour : public QObject
{
    Q_OBJECT

public:
    explicit ScreenshotTour(QString directory, QObject *parent = nullptr);

    // Folder from the environment, or empty when no tour is wanted.
    static QString directoryFromEnvironment();

    void start();

    // Saves the primary screen as NAME.png; returns the path, or empty on failure.
    QString capture(const QString &name) const;

private:
    QString m_directory;
};

} // namespace ledgewise
