// The page's way to the network: gives TV pages a content type that they are shown with, and reports what fails.
#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace browser {

class PageNetwork : public QNetworkAccessManager {
    Q_OBJECT

public:
    using QNetworkAccessManager::QNetworkAccessManager;

Q_SIGNALS:
    void failed(const QUrl& url, const QString& reason);

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request, QIODevice* body) override;

private:
    void ReportFailure(const QNetworkReply& reply);
};

}  // namespace browser
