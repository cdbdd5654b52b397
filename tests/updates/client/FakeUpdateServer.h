#pragma once

// A web server on loopback that answers every request with one set reply, or not at all, so
// that the update check meets real HTTP without leaving the machine.
#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <vector>

namespace ostrel::testsupport {

class FakeUpdateServer : public QObject {
    Q_OBJECT

public:
    explicit FakeUpdateServer(QObject* parent = nullptr);

    QUrl feedUrl() const;
    int requests() const { return requests_; }

    // The next replies: a status with its body, or silence (the connection is held open).
    void answer(int status, QByteArray body);
    void holdSilent() { silent_ = true; }

private:
    void serve(QTcpSocket* socket);

    QTcpServer server_;
    int status_ = 200;
    QByteArray body_;
    bool silent_ = false;
    int requests_ = 0;
    std::vector<QTcpSocket*> held_;
};

// An appcast with one release per version given, newest last.
QByteArray appcast(const std::vector<QString>& versions);

} // namespace ostrel::testsupport
