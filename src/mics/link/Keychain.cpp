#include "mics/link/Keychain.h"

#include <qt6keychain/keychain.h>

#include "mics/MicReceiver.h"

namespace ostrel {

namespace {

template <typename Job> Job* makeJob(const QUuid& id, QObject* parent)
{
    auto* job = new Job(QString::fromLatin1(Keychain::service), parent);
    job->setAutoDelete(true);
    job->setInsecureFallback(false);
    job->setKey(micReceiverKey(id));
    return job;
}

} // namespace

Keychain::Keychain(QObject* parent) : QObject(parent) { }

QString Keychain::unreachableText(const QString& reason)
{
    return QStringLiteral(
        "Ostrel Live couldn't reach the keyring for this receiver's password (%1).")
        .arg(reason);
}

void Keychain::setPassword(const QString& password, const QUuid& id, Done done)
{
    // Deleting first leaves no older item behind whatever the backend does with a rewrite.
    auto* remove = makeJob<QKeychain::DeletePasswordJob>(id, this);
    connect(remove, &QKeychain::Job::finished, this, [this, password, id, done](QKeychain::Job*) {
        auto* write = makeJob<QKeychain::WritePasswordJob>(id, this);
        write->setTextData(password);
        connect(write, &QKeychain::Job::finished, this, [done](QKeychain::Job* finished) {
            if (!done) return;
            done(finished->error() == QKeychain::NoError
                    ? std::nullopt
                    : std::optional<QString>(unreachableText(finished->errorString())));
        });
        write->start();
    });
    remove->start();
}

void Keychain::password(const QUuid& id, Read read)
{
    auto* job = makeJob<QKeychain::ReadPasswordJob>(id, this);
    connect(job, &QKeychain::Job::finished, this, [read](QKeychain::Job* finished) {
        auto* reader = static_cast<QKeychain::ReadPasswordJob*>(finished);
        PasswordReading reading;
        if (reader->error() == QKeychain::NoError)
            reading.password = reader->textData();
        else if (reader->error() != QKeychain::EntryNotFound)
            reading.problem = unreachableText(reader->errorString());
        if (read) read(reading);
    });
    job->start();
}

void Keychain::deletePassword(const QUuid& id)
{
    makeJob<QKeychain::DeletePasswordJob>(id, this)->start();
}

} // namespace ostrel
