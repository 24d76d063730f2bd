#include "browser/page/PageNetwork.h"

#include "browser/page/ContentTypes.h"

namespace browser {

namespace {

// Headers of a reply are its maker's to set; this names the operation where it is out of others' reach.
struct ReplyHeaders : QNetworkReply {
    using QNetworkReply::setRawHeader;
};

void SetContentType(QNetworkReply& reply, const QByteArray& type) {
    (reply.*&ReplyHeaders::setRawHeader)("Content-Type", type);
}

void CorrectContentType(QNetworkReply& reply) {
    const QByteArray sent = reply.rawHeader("Content-Type");
    const QByteArray wanted = sent.isEmpty() ? FileContentType(reply.url()) : BrowserContentType(sent);
    if (!wanted.isEmpty() && wanted != sent) {
        SetContentType(reply, wanted);
    }
}

}  // namespace

QNetworkReply* PageNetwork::createRequest(Operation operation, const QNetworkRequest& request, QIODevice* body) {
    QNetworkReply* reply = QNetworkAccessManager::createRequest(operation, request, body);
    // Connected before Qt WebKit connects, so the type is right when it looks.
    connect(reply, &QNetworkReply::metaDataChanged, this, [reply] { CorrectContentType(*reply); });
    connect(reply, &QNetworkReply::finished, this, [this, reply] { ReportFailure(*reply); });
    return reply;
}

void PageNetwork::ReportFailure(const QNetworkReply& reply) {
    const auto error = reply.error();
    if (error != QNetworkReply::NoError && error != QNetworkReply::OperationCanceledError) {
        Q_EMIT failed(reply.url(), reply.errorString());
    }
}

}  // namespace browser
