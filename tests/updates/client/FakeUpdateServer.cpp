#include "FakeUpdateServer.h"

namespace ostrel::testsupport {

FakeUpdateServer::FakeUpdateServer(QObject* parent) : QObject(parent)
{
    server_.listen(QHostAddress::LocalHost, 0);
    connect(&server_, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = server_.nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
        }
    });
}

QUrl FakeUpdateServer::feedUrl() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/ostrel/appcast.xml").arg(server_.serverPort()));
}

void FakeUpdateServer::answer(int status, QByteArray body)
{
    status_ = status;
    body_ = std::move(body);
    silent_ = false;
}

void FakeUpdateServer::serve(QTcpSocket* socket)
{
    // The request ends with an empty line; nothing in it matters to the reply.
    const QByteArray request = socket->peek(socket->bytesAvailable());
    if (!request.contains("\r\n\r\n")) return;
    socket->readAll();
    ++requests_;
    if (silent_) {
        held_.push_back(socket);
        return;
    }
    QByteArray reply = "HTTP/1.1 " + QByteArray::number(status_) + " Status\r\n"
        + "Content-Type: application/rss+xml\r\nContent-Length: " + QByteArray::number(body_.size())
        + "\r\nConnection: close\r\n\r\n" + body_;
    socket->write(reply);
    socket->disconnectFromHost();
}

QByteArray appcast(const std::vector<QString>& versions)
{
    QByteArray items;
    for (const QString& version : versions) {
        items += "<item><title>Version " + version.toUtf8() + "</title>"
            + "<link>https://ostrel.app/download/" + version.toUtf8() + "</link>"
            + "<sparkle:version>" + version.toUtf8() + "</sparkle:version>"
            + "<sparkle:releaseNotesLink>https://ostrel.app/notes/" + version.toUtf8()
            + "</sparkle:releaseNotesLink></item>\n";
    }
    return "<?xml version=\"1.0\"?>\n<rss version=\"2.0\" "
           "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>"
           "<title>Ostrel Live</title>\n"
        + items + "</channel></rss>\n";
}

} // namespace ostrel::testsupport
