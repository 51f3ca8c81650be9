#include "Appcast.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

QByteArray feed(const QByteArray &channel) {
    return R"(<?xml version="1.0" encoding="utf-8"?><rss version="2.0" xmlns:u="urn:updates"><channel>)" +
           channel + "</channel></rss>";
}

AppcastRelease release(const QString &version, const QString &shown, const QString &page) {
    return {version, shown, QUrl(page)};
}

TEST(Appcast, ReadsVersionsFromElements) {
    EXPECT_THAT(
        parseAppcast(feed("<item><u:version>12</u:version><u:shortVersionString>1.2"
                          "</u:shortVersionString><link>https://example.org/1.2</link></item>")),
        Optional(ElementsAre(release(u"12"_s, u"1.2"_s, u"https://example.org/1.2"_s))));
}

TEST(Appcast, ReadsVersionsFromTheEnclosure) {
    EXPECT_THAT(
        parseAppcast(feed(R"(<item><enclosure url="https://example.org/a.tar" u:version="12")"
                          R"( u:shortVersionString="1.2"/></item>)")),
        Optional(ElementsAre(release(u"12"_s, u"1.2"_s, u"https://example.org/a.tar"_s))));
}

TEST(Appcast, AnItemsOwnVersionWinsOverItsEnclosures) {
    EXPECT_THAT(
        parseAppcast(feed(R"(<item><enclosure u:version="1"/><u:version>2</u:version></item>)"
                          R"(<item><u:version>4</u:version><enclosure u:version="3"/></item>)")),
        Optional(ElementsAre(release(u"2"_s, u"2"_s, {}), release(u"4"_s, u"4"_s, {}))));
}

TEST(Appcast, ShowsTheVersionWhereThereIsNoShorterText) {
    EXPECT_THAT(parseAppcast(feed("<item><u:version>1.5</u:version></item>")),
                Optional(ElementsAre(release(u"1.5"_s, u"1.5"_s, {}))));
}

TEST(Appcast, ReleasesWithoutAPageGetTheChannels) {
    EXPECT_THAT(parseAppcast(feed("<item><u:version>2</u:version></item>"
                                  "<link>https://example.org/all</link>")),
                Optional(ElementsAre(release(u"2"_s, u"2"_s, u"https://example.org/all"_s))));
}

TEST(Appcast, OnlyWebAddressesArePages) {
    for (const char *address : {"file:///etc/passwd", "javascript:alert(1)", "//example.org",
                                "https://", "not an address"})
        EXPECT_THAT(parseAppcast(feed(QByteArray("<item><u:version>2</u:version><link>") + address +
                                      "</link></item>")),
                    Optional(ElementsAre(release(u"2"_s, u"2"_s, {}))))
            << address;
}

TEST(Appcast, LeavesOutItemsWithoutAVersion) {
    EXPECT_THAT(parseAppcast(feed("<item><title>News</title></item>")), Optional(IsEmpty()));
}

TEST(Appcast, SkipsWhatItDoesNotKnow) {
    EXPECT_THAT(parseAppcast(feed("<title>t</title><item><description><![CDATA[<u:version>9"
                                  "</u:version>]]></description><other><u:version>8</u:version>"
                                  "</other><u:version>1</u:version></item>")),
                Optional(ElementsAre(release(u"1"_s, u"1"_s, {}))));
}

TEST(Appcast, RefusesWhatIsNoFeed) {
    EXPECT_EQ(parseAppcast({}), std::nullopt);
    EXPECT_EQ(parseAppcast("<html><body/></html>"), std::nullopt);
    EXPECT_EQ(parseAppcast("{\"version\": 2}"), std::nullopt);
}

TEST(Appcast, RefusesATruncatedFeed) {
    const QByteArray whole = feed("<item><u:version>1</u:version></item>");
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_EQ(parseAppcast(whole.first(length)), std::nullopt) << length;
}

TEST(Appcast, RefusesADocumentTypeAndItsEntities) {
    EXPECT_EQ(parseAppcast("<!DOCTYPE rss [<!ENTITY a \"aaaa\">]><rss><channel><item>"
                           "<version>&a;</version></item></channel></rss>"),
              std::nullopt);
}

TEST(Appcast, RefusesAFieldBeyondItsLength) {
    const auto withVersion = [](int length) {
        return feed("<item><u:version>" + QByteArray(length, '1') + "</u:version></item>");
    };
    EXPECT_NE(parseAppcast(withVersion(4096)), std::nullopt);
    EXPECT_EQ(parseAppcast(withVersion(4097)), std::nullopt);
}

TEST(Appcast, RefusesMoreItemsThanItsLimit) {
    const QByteArray item = "<item><u:version>1</u:version></item>";
    EXPECT_NE(parseAppcast(feed(item.repeated(10'000))), std::nullopt);
    EXPECT_EQ(parseAppcast(feed(item.repeated(10'001))), std::nullopt);
}

TEST(Appcast, RefusesDeepNesting) {
    const QByteArray open = QByteArray("<a>").repeated(100'000);
    const QByteArray close = QByteArray("</a>").repeated(100'000);
    EXPECT_EQ(parseAppcast(feed(open + close)), std::nullopt);
    EXPECT_EQ(parseAppcast(feed("<item><u:version>" + open + close + "</u:version></item>")),
              std::nullopt);
}

TEST(NewestRelease, IsTheGreatestVersionWhereverItStands) {
    EXPECT_EQ(newestRelease({release(u"1.9"_s, {}, {}), release(u"1.10"_s, {}, {}),
                             release(u"1.2"_s, {}, {})}),
              release(u"1.10"_s, {}, {}));
}

TEST(NewestRelease, IsTheFirstOfEquals) {
    EXPECT_EQ(newestRelease({release(u"1.0"_s, u"first"_s, {}), release(u"1"_s, u"second"_s, {})}),
              release(u"1.0"_s, u"first"_s, {}));
}

TEST(NewestRelease, IsNoneOfNone) {
    EXPECT_EQ(newestRelease({}), std::nullopt);
}

} // namespace
} // namespace tarne::test
