#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <utility>

/**
 * A mail server for tests on 127.0.0.1: it speaks just enough SMTP (greeting,
 * EHLO/HELO, MAIL, RCPT, DATA, QUIT) to take mail and keep it, and shuts
 * itself down after its lifetime so a test can never hang on it.
 */
class SmtpSink
{
public:
    struct Mail
    {
        QByteArray from;
        QByteArrayList recipients;
        QByteArray data;

        QByteArray headers() const { return data.left(data.indexOf("\r\n\r\n")); }
        /** The body after the headers, decoded from base64. */
        QByteArray decodedBody() const
        {
            return QByteArray::fromBase64(data.mid(data.indexOf("\r\n\r\n") + 4));
        }
    };

    explicit SmtpSink(int lifetimeMs = 30000)
    {
        m_server.listen(QHostAddress::LocalHost, 0);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
        m_shutdown.setSingleShot(true);
        QObject::connect(&m_shutdown, &QTimer::timeout, &m_server, [this] { shutDown(); });
        m_shutdown.start(lifetimeMs);
    }

    bool isListening() const { return m_server.isListening(); }
    quint16 port() const { return m_server.serverPort(); }
    const QList<Mail>& mails() const { return m_mails; }
    /** Answers every RCPT with a refusal, so that no mail can be delivered. */
    void refuseRecipients() { m_refuseRecipients = true; }

private:
    struct Conversation
    {
        QByteArray pending;
        Mail mail;
        bool inData = false;
    };

    void accept()
    {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            socket->setParent(&m_server);
            m_talks.insert(socket, Conversation());
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [this, socket] { read(socket, &m_talks[socket]); });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, [this, socket] {
                m_talks.remove(socket);
                socket->deleteLater();
            });
            socket->write("220 sink ESMTP\r\n");
        }
    }

    void shutDown()
    {
        m_server.close();
        for (QTcpSocket* socket : m_talks.keys()) {
            socket->abort();
        }
    }

    void read(QTcpSocket* socket, Conversation* talk)
    {
        talk->pending += socket->readAll();
        qsizetype end;
        while ((end = talk->pending.indexOf("\r\n")) >= 0) {
            const QByteArray line = talk->pending.left(end);
            talk->pending.remove(0, end + 2);
            if (talk->inData && line == ".") {
                talk->inData = false;
                m_mails.append(std::exchange(talk->mail, Mail()));
                socket->write("250 queued\r\n");
            } else if (talk->inData) {
                talk->mail.data += (line.startsWith("..") ? line.mid(1) : line) + "\r\n";
            } else {
                answer(socket, talk, line);
            }
        }
    }

    void answer(QTcpSocket* socket, Conversation* talk, const QByteArray& line)
    {
        const QByteArray verb = line.left(4).toUpper();
        if (verb == "EHLO" || verb == "HELO" || verb == "RSET" || verb == "NOOP") {
            socket->write("250 sink\r\n");
        } else if (verb == "MAIL") {
            talk->mail.from = line.mid(line.indexOf(':') + 1).trimmed();
            socket->write("250 OK\r\n");
        } else if (verb == "RCPT") {
            if (m_refuseRecipients) {
                socket->write("550 no such mailbox\r\n");
                return;
            }
            talk->mail.recipients.append(line.mid(line.indexOf(':') + 1).trimmed());
            socket->write("250 OK\r\n");
        } else if (verb == "DATA") {
            talk->inData = true;
            socket->write("354 go ahead\r\n");
        } else if (verb == "QUIT") {
            socket->write("221 bye\r\n");
            socket->disconnectFromHost();
        } else {
            socket->write("502 not here\r\n");
        }
    }

    QHash<QTcpSocket*, Conversation> m_talks;
    QList<Mail> m_mails;
    bool m_refuseRecipients = false;
    // Last, so that sockets closing while the server goes still find their conversation.
    QTimer m_shutdown;
    QTcpServer m_server;
};
