#include "mics/link/EWDXReceiverClient.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QUrl>

#include "mics/link/MicLog.h"

namespace ostrel {

const QString EWDXReceiverClient::passwordRejectedText
    = QStringLiteral("The password was rejected. Check 3rd Party Access in WSM.");
const QString EWDXReceiverClient::noSSCv2Text
    = QStringLiteral("This receiver doesn't support SSCv2. Update it to firmware 4.0 or later.");
const QString EWDXReceiverClient::invalidAddressText = QStringLiteral("That address isn't valid.");
const QString EWDXReceiverClient::subscriptionRefusedText
    = QStringLiteral("The receiver didn't accept Ostrel Live's subscription.");

QString EWDXReceiverClient::httpErrorText(int status)
{
    return QStringLiteral("The receiver returned an error (%1).").arg(status);
}

EWDXReceiverClient::EWDXReceiverClient(
    MicReceiver receiver, QString password, CertificatePins& pins, Timings timings, QObject* parent)
    : QObject(parent),
      receiver_(std::move(receiver)),
      password_(std::move(password)),
      pins_(pins),
      timings_(timings)
{
    // Nothing of a receiver's answers is kept between requests.
    network_.setCookieJar(nullptr);
    network_.setCache(nullptr);
    retryTimer_.setSingleShot(true);
    retryTimer_.setInterval(timings_.retryDelayMs);
    connect(&retryTimer_, &QTimer::timeout, this, &EWDXReceiverClient::connectAndListen);
    const auto pinned = [this](QNetworkReply* reply) {
        const QSslCertificate leaf = reply->sslConfiguration().peerCertificate();
        return !leaf.isNull() && pins_.accepts(reply->url().host(), leaf.toDer());
    };
    // A self-signed certificate is trusted when it is the pinned one.
    connect(&network_, &QNetworkAccessManager::sslErrors, this,
        [pinned](QNetworkReply* reply, const QList<QSslError>&) {
            if (pinned(reply)) reply->ignoreSslErrors();
        });
    // One that a certificate authority vouches for is pinned all the same.
    connect(&network_, &QNetworkAccessManager::encrypted, this, [pinned](QNetworkReply* reply) {
        if (!pinned(reply)) reply->abort();
    });
}

EWDXReceiverClient::~EWDXReceiverClient()
{
    stop();
}

QString EWDXReceiverClient::keyPrefix() const
{
    return receiver_.key() + u'#';
}

QString EWDXReceiverClient::displayName() const
{
    if (deviceName_) return *deviceName_;
    return receiver_.label.isEmpty() ? receiver_.host : receiver_.label;
}

void EWDXReceiverClient::start()
{
    if (isRunning_) return;
    isRunning_ = true;
    connectAndListen();
}

void EWDXReceiverClient::stop()
{
    isRunning_ = false;
    isConnecting_ = false;
    retryTimer_.stop();
    for (const QPointer<QNetworkReply>& reply : {current_, stream_, subscription_}) {
        if (!reply) continue;
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

QNetworkRequest EWDXReceiverClient::request(
    const QString& path, const QByteArray& accept, int timeoutMs) const
{
    QNetworkRequest request(
        QUrl(QStringLiteral("https://") + receiver_.host + QStringLiteral("/api") + path));
    request.setRawHeader("Accept", accept);
    request.setRawHeader("Authorization", "Basic " + ("api:" + password_.toUtf8()).toBase64());
    request.setTransferTimeout(timeoutMs);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

QNetworkReply* EWDXReceiverClient::watch(QNetworkReply* reply)
{
    connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
    return reply;
}

std::optional<QString> EWDXReceiverClient::responseProblem(QNetworkReply* reply) const
{
    const QVariant attribute = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!attribute.isValid()) return std::nullopt;
    const int status = attribute.toInt();
    if (status >= 200 && status <= 299) return std::nullopt;
    if (status == 401 || status == 403) return passwordRejectedText;
    if (status == 404) return noSSCv2Text;
    return httpErrorText(status);
}

void EWDXReceiverClient::connectAndListen()
{
    if (!isRunning_ || isConnecting_) return;
    isConnecting_ = true;
    streamBuffer_.clear();
    events_ = {};
    const QNetworkRequest identity = request(
        QStringLiteral("/device/identity"), "application/json", timings_.requestTimeoutMs);
    if (receiver_.host.trimmed().isEmpty() || !identity.url().isValid()
        || identity.url().host().isEmpty()) {
        end(Ending::receiverError, invalidAddressText);
        return;
    }
    QNetworkReply* reply = watch(network_.get(identity));
    current_ = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        if (auto problem = responseProblem(reply)) return end(Ending::receiverError, problem);
        if (reply->error() != QNetworkReply::NoError) return end(Ending::networkError);
        channelCount_ = EWDXProtocol::channelCount(
            EWDXProtocol::product(reply->readAll()).value_or(QString()));
        readSite();
    });
}

void EWDXReceiverClient::readSite()
{
    QNetworkReply* reply = watch(network_.get(
        request(QStringLiteral("/device/site"), "application/json", timings_.requestTimeoutMs)));
    current_ = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        // The site record is a nicety: without it the label or host names the receiver.
        if (reply->error() == QNetworkReply::NoError && !responseProblem(reply)) {
            if (auto name = EWDXProtocol::deviceName(reply->readAll())) deviceName_ = name;
        }
        if (onProblem) onProblem(std::nullopt);
        openStream();
    });
}

void EWDXReceiverClient::openStream()
{
    QNetworkReply* reply = watch(network_.get(request(QStringLiteral("/ssc/state/subscriptions"),
        "text/event-stream", timings_.streamTimeoutMs)));
    stream_ = reply;
    connect(reply, &QNetworkReply::metaDataChanged, this, [this, reply] {
        if (reply != stream_) return;
        if (auto problem = responseProblem(reply)) return end(Ending::receiverError, problem);
        if (!reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid()) return;
        if (!isReachable_) {
            isReachable_ = true;
            if (onReachabilityChange) onReachabilityChange(true, displayName());
        }
    });
    connect(reply, &QNetworkReply::readyRead, this, &EWDXReceiverClient::readStream);
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        if (reply != stream_) return;
        if (auto problem = responseProblem(reply)) return end(Ending::receiverError, problem);
        readStream();
        end(reply->error() == QNetworkReply::NoError ? Ending::normal : Ending::networkError);
    });
}

void EWDXReceiverClient::readStream()
{
    QNetworkReply* reply = stream_;
    if (!reply) return;
    streamBuffer_ += reply->readAll();
    qsizetype start = 0;
    for (qsizetype end = streamBuffer_.indexOf('\n'); end >= 0 && reply == stream_;
         end = streamBuffer_.indexOf('\n', start)) {
        QByteArray line = streamBuffer_.mid(start, end - start);
        start = end + 1;
        if (line.endsWith('\r')) line.chop(1);
        if (auto event = events_.read(QString::fromUtf8(line))) handle(*event);
    }
    if (reply == stream_) streamBuffer_.remove(0, start);
}

void EWDXReceiverClient::handle(const EWDXProtocol::Event& event)
{
    if (event.name == u"open") {
        // Without a session the stream carries nothing useful until it ends.
        if (auto session = EWDXProtocol::sessionUUID(event.data.toUtf8())) subscribe(*session, 0);
        return;
    }
    if (event.name == u"close") return end(Ending::normal);
    const auto written = EWDXProtocol::apply(event.data.toUtf8(), states_);
    if (written.empty()) {
        ++dropped_;
        qCDebug(ostrelMics) << "Dropped an event from EW-DX receiver" << receiver_.host
                            << "that named no channel;" << dropped_ << "so far";
    }
    for (qint64 channel : written)
        report(channel);
}

void EWDXReceiverClient::subscribe(const QString& sessionUUID, int form)
{
    QJsonArray paths;
    for (int channel = 0; channel < channelCount_; ++channel) {
        for (const QString& path : EWDXProtocol::subscriptionPaths(channel))
            paths.append(form == 0 ? path : QStringLiteral("/api") + path);
    }
    QNetworkRequest put = request(
        QStringLiteral("/ssc/state/subscriptions/") + sessionUUID + QStringLiteral("/add"),
        "application/json", timings_.requestTimeoutMs);
    put.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    if (!put.url().isValid()) {
        if (form == 0) return subscribe(sessionUUID, 1);
        return end(Ending::receiverError, subscriptionRefusedText);
    }
    QNetworkReply* reply
        = watch(network_.put(put, QJsonDocument(paths).toJson(QJsonDocument::Compact)));
    subscription_ = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply, sessionUUID, form] {
        const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        // A network error is not retried in the other form.
        if (!status.isValid()) return end(Ending::networkError);
        const int code = status.toInt();
        if (code >= 200 && code <= 299) return;
        // Firmware differs in which form of the paths it accepts.
        if (form == 0) return subscribe(sessionUUID, 1);
        end(Ending::receiverError, subscriptionRefusedText);
    });
}

void EWDXReceiverClient::report(qint64 channel)
{
    if (!onReport || !states_.count(channel)) return;
    const EWDXProtocol::ChannelState& state = states_.at(channel);
    // The wire counts channels from 0, the rest of the station from 1.
    const QString name = state.name.value_or(displayName() + u' ' + QString::number(channel + 1));
    onReport(MicChannelReport {keyPrefix() + QString::number(channel + 1), name, state.hasSignal(),
        state.lowSignal(), state.lowBattery()});
}

void EWDXReceiverClient::end(Ending ending, const std::optional<QString>& problem)
{
    if (!isConnecting_) return;
    isConnecting_ = false;
    for (const QPointer<QNetworkReply>& reply : {current_, stream_, subscription_}) {
        if (!reply) continue;
        reply->disconnect(this);
        reply->abort();
    }
    stream_ = nullptr;
    if (ending == Ending::receiverError && onProblem) onProblem(problem);
    if (isReachable_) {
        isReachable_ = false;
        if (onReachabilityChange) onReachabilityChange(false, displayName());
    }
    if (isRunning_) retryTimer_.start();
}

} // namespace ostrel
