// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A web server in the test's own process that serves an update feed, or misbehaves in
// one of the ways a real one can: slow, huge, redirecting in a loop, failing.

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

namespace ledgewise::testing {

class FeedServer : public QObject
{
public:
    enum class Mode { feed, silent, hugeStreamed, hugeAnnounced, redirectLoop, notFound };

    FeedServer()
    {
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection()) {
                m_sockets.append(socket);
                connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { read(socket); });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

    bool listen() { return m_server.listen(QHostAddress::LocalHost); }
    QString url(const QString &path = QStringLiteral("/appcast.xml")) const
    {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }

    Mode mode = Mode::feed;
    QByteArray body;
    // Every request's head (request line and headers), in order.
    QList<QByteArray> requests;

private:
    void read(QTcpSocket *socket)
    {
        QByteArray &pending = m_pending[socket];
        pending += socket->readAll();
        const qsizetype end = pending.indexOf("\r\n\r\n");
        if (end < 0)
            return;
        const QByteArray head = pending.left(end);
        pending.remove(0, end + 4);
        requests.append(head);
        const QByteArray path = head.split(' ').value(1);
        switch (mode) {
        case Mode::feed:
            answer(socket, "200 OK",
                "Content-Type: application/rss+xml\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n",
                body);
            break;
        case Mode::silent:
            break; // holds the connection and says nothing
        case Mode::hugeStreamed:
            // No length announced: only counting what arrives can stop it.
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/rss+xml\r\nConnection: close\r\n\r\n");
            socket->write("<rss><channel>");
            for (int i = 0; i < 300; ++i)
                socket->write(QByteArray(4096, ' '));
            break;
        case Mode::hugeAnnounced:
            socket->write(
                "HTTP/1.1 200 OK\r\nContent-Type: application/rss+xml\r\nContent-Length: 2000000\r\n\r\n<rss>");
            break;
        case Mode::redirectLoop: {
            const QByteArray next = path == "/a" ? "/b" : "/a";
            answer(socket, "302 Found", "Location: " + next + "\r\nContent-Length: 0\r\n", {});
            break;
        }
        case Mode::notFound:
            answer(socket, "404 Not Found", "Content-Length: 9\r\n", "not found");
            break;
        }
    }

    static void answer(QTcpSocket *socket, const QByteArray &status, const QByteArray &headers, const QByteArray &body)
    {
        socket->write("HTTP/1.1 " + status + "\r\n" + headers + "\r\n" + body);
    }

    QTcpServer m_server;
    QList<QPointer<QTcpSocket>> m_sockets;
    QHash<QTcpSocket *, QByteArray> m_pending;
};

// An appcast with one release of `version`.
inline QByteArray appcastOf(const QByteArray &version)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<rss version=\"2.0\" xmlns:ac=\"https://ledgewise.org/xml-namespaces/appcast\">\n"
           "<channel><title>Ledgewise</title>\n"
           "<item><title>Ledgewise "
        + version
        + "</title>\n"
          "<link>https://ledgewise.org/download/"
        + version
        + "</link>\n"
          "<ac:releaseNotesLink>https://ledgewise.org/notes/"
        + version
        + "</ac:releaseNotesLink>\n"
          "<enclosure url=\"https://ledgewise.org/files/ledgewise.tar.gz\" ac:version=\""
        + version
        + "\" length=\"1\" type=\"application/octet-stream\"/>\n"
          "</item></channel></rss>\n";
}

} // namespace ledgewise::testing
