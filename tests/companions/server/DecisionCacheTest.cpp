#include "DecisionCache.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

const Verdict off{Judgement::OffTask, 0.9, u"A film."_s};

TEST(ADecisionCache, KnowsWhatWasPutIn) {
    DecisionCache cache;
    EXPECT_EQ(cache.find("key"), std::nullopt);
    cache.insert("key", off);
    EXPECT_EQ(cache.find("key"), off);
    cache.insert("key", Verdict());
    EXPECT_EQ(cache.find("key"), Verdict());
}

TEST(ADecisionCache, ThatIsFullForgetsWhatWasNotAskedForTheLongest) {
    DecisionCache cache(2);
    cache.insert("first", off);
    cache.insert("second", off);
    EXPECT_TRUE(cache.find("first"));
    cache.insert("third", off);
    EXPECT_TRUE(cache.find("first"));
    EXPECT_FALSE(cache.find("second"));
    EXPECT_TRUE(cache.find("third"));
}

} // namespace
} // namespace tarne::test
