#include "DelayLine.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

namespace {

void pass(QTcpSocket *from, QTcpSocket *to, int delayMs)
{
    QObject::connect(from, &QTcpSocket::readyRead, to, [=] {
        QTimer::singleShot(delayMs, Qt::PreciseTimer, to,
                           [to, data = from->readAll()] { to->write(data); });
    });
    QObject::connect(from, &QTcpSocket::disconnected, to, [=] {
        QTimer::singleShot(delayMs, Qt::PreciseTimer, to, &QTcpSocket::disconnectFromHost);
    });
    QObject::connect(to, &QTcpSocket::disconnected, to, &QObject::deleteLater);
}

} // namespace

DelayLine::DelayLine(quint16 serverPort, int delayMs)
{
    auto *server = new QTcpServer;
    server->listen(QHostAddress::LocalHost);
    m_port = server->serverPort();
    QObject::connect(server, &QTcpServer::newConnection, server, [=] {
        QTcpSocket *client = server->nextPendingConnection();
        auto *service = new QTcpSocket(server);
        service->connectToHost(QHostAddress(QHostAddress::LocalHost), serverPort);
        for (QTcpSocket *socket : {client, service})
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        pass(client, service, delayMs);
        pass(service, client, delayMs);
    });
    QObject::connect(&m_thread, &QThread::finished, server, &QObject::deleteLater);
    server->moveToThread(&m_thread);
    m_thread.start();
}

DelayLine::~DelayLine()
{
    m_thread.quit();
    m_thread.wait();
}
