#pragma once

#include <QByteArrayList>
#include <QHostAddress>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <utility>

/**
 * A mail server on 127.0.0.1 that takes one mail at a time: it says yes to every command (or no
 * to every recipient, when asked) and keeps the sender, the recipients and what follows DATA.
 * Destroying it drops its connections.
 */
class SmtpSink
{
public:
    struct Mail
    {
        QByteArray from;
        QByteArrayList recipients;
        QByteArray data;

        /** The body after the headers, decoded from base64. */
        QByteArray decodedBody() const
        {
            return QByteArray::fromBase64(data.mid(data.indexOf("\r\n\r\n") + 4));
        }
    };

    SmtpSink()
    {
        m_server.listen(QHostAddress::LocalHost, 0);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            QTcpSocket* socket = m_server.nextPendingConnection(); // a child of the server
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                while (socket->canReadLine()) {
                    socket->write(answer(socket->readLine().chopped(2)));
                }
            });
            socket->write("220 sink\r\n");
        });
    }

    quint16 port() const { return m_server.serverPort(); }
    const QList<Mail>& mails() const { return m_mails; }
    /** Answers every RCPT with a refusal, so that no mail can be delivered. */
    void refuseRecipients() { m_refuseRecipients = true; }

private:
    QByteArray answer(const QByteArray& line)
    {
        if (m_inData && line != ".") {
            m_mail.data += line + "\r\n";
            return {};
        }
        const QByteArray verb = line.left(4).toUpper(), argument = line.mid(line.indexOf(':') + 1);
        if (std::exchange(m_inData, verb == "DATA")) {
            m_mails.append(std::exchange(m_mail, {}));
        } else if (verb == "MAIL") {
            m_mail.from = argument;
        } else if (verb == "RCPT" && m_refuseRecipients) {
            return "550 no such mailbox\r\n";
        } else if (verb == "RCPT") {
            m_mail.recipients.append(argument);
        }
        return m_inData ? "354 go ahead\r\n" : verb == "QUIT" ? "221 bye\r\n" : "250 OK\r\n";
    }

    QList<Mail> m_mails;
    Mail m_mail;
    bool m_inData = false;
    bool m_refuseRecipients = false;
    QTcpServer m_server; // last, so that its connections close before the state they write
};
