#pragma once

#include <QByteArray>
#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

/**
 * A one-page web server on the loopback interface: answers every request
 * with the status and body it was given, or, when silent, never answers.
 */
class HttpStub : public QObject
{
public:
    HttpStub(int status, QByteArray body, bool silent = false)
        : m_status(status), m_body(std::move(body)), m_silent(silent)
    {
        connect(&m_server, &QTcpServer::newConnection, this, &HttpStub::accept);
        m_server.listen(QHostAddress::LocalHost);
    }

    QUrl url(const QString& path = QStringLiteral("/setup/LatestUPT/Korvelle.xml")) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
    }
    int requests() const { return m_requests; }

private:
    void accept()
    {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket); });
        }
    }

    void answer(QTcpSocket* socket)
    {
        m_pending[socket] += socket->readAll();
        if (!m_pending[socket].contains("\r\n\r\n")) {
            return;
        }
        ++m_requests;
        if (m_silent) {
            return;
        }
        socket->write("HTTP/1.1 " + QByteArray::number(m_status) +
                      " Stub\r\nContent-Type: text/xml\r\n"
                      "Content-Length: " +
                      QByteArray::number(m_body.size()) + "\r\nConnection: close\r\n\r\n" + m_body);
        socket->disconnectFromHost();
    }

    QTcpServer m_server;
    int m_status;
    QByteArray m_body;
    bool m_silent;
    int m_requests = 0;
    QHash<QTcpSocket*, QByteArray> m_pending;
};
