#include "Verdict.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(AVerdict, IsReadFromExactlyWhatTheModelWasAskedFor) {
    EXPECT_EQ(readVerdict(uR"({"verdict":"off_task","confidence":0.75,"reason":"A film."})"_s),
              (Verdict{Judgement::OffTask, 0.75, u"A film."_s}));
    EXPECT_EQ(readVerdict(uR"( {"reason":"","confidence":1,"verdict":"on_task"} )"_s),
              (Verdict{Judgement::OnTask, 1.0, {}}));
}

class AnAnswerOutsideTheSchema : public testing::TestWithParam<const char *> {};

TEST_P(AnAnswerOutsideTheSchema, IsUnsure) {
    EXPECT_EQ(readVerdict(QString::fromUtf8(GetParam())), Verdict());
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryKind, AnAnswerOutsideTheSchema,
    testing::Values("", "on_task", "null", "[]", "{}", R"("on_task")",
                    R"({"verdict":"on_task","confidence":0.9})",
                    R"({"verdict":"on_task","reason":"x"})", R"({"confidence":0.9,"reason":"x"})",
                    R"({"verdict":"ON_TASK","confidence":0.9,"reason":"x"})",
                    R"({"verdict":"maybe","confidence":0.9,"reason":"x"})",
                    R"({"verdict":"on_task","confidence":"0.9","reason":"x"})",
                    R"({"verdict":"on_task","confidence":1.01,"reason":"x"})",
                    R"({"verdict":"on_task","confidence":-0.1,"reason":"x"})",
                    R"({"verdict":"on_task","confidence":0.9,"reason":null})",
                    R"({"verdict":true,"confidence":0.9,"reason":"x"})",
                    R"({"verdict":"on_task","confidence":0.9,"reason":"x","allow":true})",
                    R"({"verdict":"off_task","verdict":"on_task","confidence":0.9,"reason":"x"})",
                    R"([{"verdict":"on_task","confidence":0.9,"reason":"x"}])",
                    R"({"verdict":"on_task","confidence":0.9,"reason":"x"} and more)",
                    "```json\n{\"verdict\":\"on_task\",\"confidence\":0.9,\"reason\":\"x\"}\n```"));

TEST(AReason, IsCutOffAt120CharactersBetweenGraphemes) {
    const QString start(119, u'x');
    const QString family = u"👩‍👩‍👧"_s;
    const QString text =
        uR"({"verdict":"unsure","confidence":0.5,"reason":"%1"})"_s.arg(start + family);
    EXPECT_EQ(readVerdict(text).reason, start);
    const QString fits =
        uR"({"verdict":"unsure","confidence":0.5,"reason":"%1"})"_s.arg(start + u'y');
    EXPECT_EQ(readVerdict(fits).reason, start + u'y');
}

} // namespace
} // namespace tarne::test
