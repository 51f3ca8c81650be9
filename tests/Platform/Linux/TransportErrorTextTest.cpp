#include "TransportErrorText.h"

#include <QMetaEnum>

#include <gtest/gtest.h>

namespace tarne {
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

} // namespace
} // namespace tarne
