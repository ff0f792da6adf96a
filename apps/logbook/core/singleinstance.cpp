// SPDX-License-Identifier: MIT
#include "singleinstance.h"

#include <QtNetwork/qlocalsocket.h>

namespace {

constexpr int kAnswerMs = 2000;

} // namespace

SingleInstance::SingleInstance(const QString &name, QObject *parent) : QObject(parent), m_name(name)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *const socket = m_server.nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            Q_EMIT raised();
        }
    });
}

bool SingleInstance::claim()
{
    // Asked before listen(), which would take the socket of a living app away from it.
    if (raiseFirst())
        return false;
    // Nobody answers there. If the first was killed, its socket is left.
    QLocalServer::removeServer(m_name);
    // Without a socket two may run, and both may use the file.
    m_server.listen(m_name);
    return true;
}

bool SingleInstance::raiseFirst() const
{
    QLocalSocket socket;
    socket.connectToServer(m_name);
    return socket.waitForConnected(kAnswerMs);
}
