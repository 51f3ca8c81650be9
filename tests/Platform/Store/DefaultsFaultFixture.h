#pragma once

#include "StoreTest.h"

#include <gmock/gmock.h>

namespace tarne::test {

/// A store whose file is refused, changed or held, and what it says of that.
class DefaultsFaults : public StoreTest {
protected:
    void write(const QString &text) {
        store().setObject(key, text);
        store().synchronize();
        runPosted();
    }
    bool isRefusalTold() const {
        return eventually([] { return !StoreDiagnostics::lines().isEmpty(); });
    }
    void expectOneLineThatSays(const std::string &part) {
        ASSERT_EQ(StoreDiagnostics::lines().size(), 1);
        EXPECT_THAT(StoreDiagnostics::lines().constFirst().toStdString(), testing::HasSubstr(part));
    }

    StoreDiagnostics diagnostics;
};

} // namespace tarne::test
