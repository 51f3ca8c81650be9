#include "TransportErrorText.h"

#include <QMetaEnum>

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(TransportErrorText, EveryErrorHasOneLineOfText) {
    const QMetaEnum errors = QMetaEnum::fromType<QNetworkReply::NetworkError>();
    ASSERT_GT(errors.keyCount(), 30);
    for (int i = 0; i < errors.keyCount(); ++i) {
        const auto error = static_cast<QNetworkReply::NetworkError>(errors.value(i));
        const QString text = transportErrorText(error);
        EXPECT_FALSE(text.isEmpty()) << errors.key(i);
        EXPECT_FALSE(text.contains(QLatin1Char('\n'))) << errors.key(i);
    }
}

struct ErrorText {
    QNetworkReply::NetworkError error;
    QString text;
};

TEST(TransportErrorText, TellsTheReasonsApart) {
    const std::vector<ErrorText> table{
        {QNetworkReply::HostNotFoundError,
         u"The server could not be found. Is this computer online?"_s},
        {QNetworkReply::ConnectionRefusedError, u"The server refused the connection."_s},
        {QNetworkReply::RemoteHostClosedError,
         u"The connection was lost before the answer was complete."_s},
        {QNetworkReply::TimeoutError, u"The request timed out."_s},
        {QNetworkReply::OperationCanceledError, u"The request timed out."_s},
        {QNetworkReply::SslHandshakeFailedError,
         u"A secure connection to the server could not be made."_s},
        {QNetworkReply::TooManyRedirectsError, u"The server sent the request elsewhere."_s},
        {QNetworkReply::ProxyNotFoundError, u"The proxy did not pass the request on."_s},
        {QNetworkReply::ProtocolFailure, u"The server's answer could not be understood."_s},
        {QNetworkReply::UnknownNetworkError, u"The network connection failed."_s}};
    for (const ErrorText &row : table)
        EXPECT_EQ(transportErrorText(row.error), row.text);
}

} // namespace
} // namespace tarne::test
