#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

/** A one-page web server on the loopback interface: every request gets one status and body. */
class HttpStub : public QTcpServer
{
public:
    HttpStub(int status, const QByteArray& body)
    {
        const QByteArray answer = "HTTP/1.1 " + QByteArray::number(status) +
                                  " Stub\r\nContent-Type: text/xml\r\nConnection: close\r\n"
                                  "Content-Length: " +
                                  QByteArray::number(body.size()) + "\r\n\r\n" + body;
        connect(this, &QTcpServer::newConnection, this, [this, answer] {
            while (QTcpSocket* socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, socket, [socket, answer] {
                    if (socket->peek(socket->bytesAvailable()).contains("\r\n\r\n")) {
                        socket->readAll(); // the request's head is all here
                        socket->write(answer);
                        socket->disconnectFromHost();
                    }
                });
            }
        });
        listen(QHostAddress::LocalHost);
    }

    QUrl url(const QString& path = QStringLiteral("/setup/LatestUPT/Korvelle.xml")) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(path));
    }
};
