#pragma once

#include <QObject>

namespace ledgewise {

// Ledgewise's own name on the session bus. The first instance owns it; a second
// launch finds it taken and hands its request to the first one instead of starting
// twice.
class ApplicationService : public QObject
{
    Q_OBJECT

public:
    static constexpr auto serviceName = "org.ledgewise.Ledgewise";
    static constexpr auto objectPath = "/org/ledgewise/Ledgewise";

    explicit ApplicationService(QObject *parent = nullptr);
    ~ApplicationService() override;

    // Takes the bus name; false when another instance holds it (or there is no bus,
    // in which case the instance just runs alone).
    bool registerOnSessionBus();
    bool isRegistered() const { return m_registered; }

    // Asks the running instance to do something. False when none answers.
    static bool callRunningInstance(const QString &method);

public slots:
    // Called through the bus.
    void Quit() { emit quitRequested(); }
    void Reopen() { emit reopenRequested(); }

signals:
    void quitRequested();
    void reopenRequested();

private:
    bool m_registered = false;
};

} // namespace ledgewise
