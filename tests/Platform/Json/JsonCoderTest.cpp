#include "JsonCoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

using Numbers = std::vector<double>;

/// The text between the quotes as it is read, or none.
std::optional<QString> readText(const QByteArray &text) {
    const auto texts = json::decode<QStringList>("[\"" + text + "\"]");
    return texts ? std::optional(texts->front()) : std::nullopt;
}

std::optional<double> readNumber(const QByteArray &text) {
    const auto numbers = json::decode<Numbers>('[' + text + ']');
    return numbers ? std::optional(numbers->front()) : std::nullopt;
}

QByteArray written(double number) {
    return json::encode(Numbers{number}).value_or(QByteArray());
}
QByteArray written(const QString &text) {
    return json::encode(QStringList{text}).value();
}

struct Flag {
    bool flag = false;
};

/// A record as it was stored once, and with a member that was added since.
struct Note {
    QString text;
};
struct NoteWithOptionalAuthor {
    QString text;
    std::optional<QString> author;
};
struct NoteWithAuthor {
    QString text;
    QString author;
};

/// Whether `value` is valid where nobody knows its key.
bool isIgnored(const QByteArray &value) {
    return json::decode<Flag>("{\"unknown\":" + value + ",\"flag\":true}").has_value();
}

} // namespace

template <>
struct tarne::json::JsonForm<Flag> {
    static constexpr std::tuple members{member("flag", &Flag::flag)};
    static Flag blank() { return {}; }
};

template <>
struct tarne::json::JsonForm<Note> {
    static constexpr std::tuple members{member("text", &Note::text)};
    static Note blank() { return {}; }
};
template <>
struct tarne::json::JsonForm<NoteWithOptionalAuthor> {
    static constexpr std::tuple members{member("text", &NoteWithOptionalAuthor::text),
                                        member("author", &NoteWithOptionalAuthor::author)};
    static NoteWithOptionalAuthor blank() { return {}; }
};
template <>
struct tarne::json::JsonForm<NoteWithAuthor> {
    static constexpr std::tuple members{member("text", &NoteWithAuthor::text),
                                        member("author", &NoteWithAuthor::author)};
    static NoteWithAuthor blank() { return {}; }
};

TEST(JsonCoder, ADocumentFromBeforeAMemberReadsWhereTheMemberIsOptionalAlone) {
    const QByteArray stored = json::encode(Note{u"Begin early"_s}).value();
    const auto read = json::decode<NoteWithOptionalAuthor>(stored);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->text, u"Begin early"_s);
    EXPECT_EQ(read->author, std::nullopt);
    EXPECT_FALSE(json::decode<NoteWithAuthor>(stored).has_value());
}

TEST(JsonCoder, ADocumentWithAMemberThatCameLaterReadsWithoutIt) {
    const NoteWithOptionalAuthor later{u"Begin early"_s, u"Ada"_s};
    const auto read = json::decode<Note>(json::encode(later).value());
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->text, u"Begin early"_s);
}

TEST(JsonCoder, ADoubleIsTheShortestTextThatReadsBack) {
    EXPECT_EQ(written(0.1), "[0.1]"_ba);
    EXPECT_EQ(written(1500.0), "[1500]"_ba);
    EXPECT_EQ(written(794231999.123456), "[794231999.123456]"_ba);
    EXPECT_EQ(written(5e-324), "[5e-324]"_ba);
    for (const double number : {0.1 + 0.2, 1.7976931348623157e308, -0.0, 1e22, 1e23, 1.0 / 3.0,
                                9007199254740993.0, 4.35, 2.2250738585072011e-308}) {
        const auto read = json::decode<Numbers>(written(number));
        ASSERT_TRUE(read.has_value()) << number;
        EXPECT_EQ(std::bit_cast<quint64>(read->front()), std::bit_cast<quint64>(number));
    }
}

TEST(JsonCoder, ANumberReadsAsTheNearestDouble) {
    EXPECT_EQ(readNumber("0"), 0.0);
    EXPECT_EQ(readNumber("-1.5e3"), -1500.0);
    EXPECT_EQ(readNumber("18446744073709551616"), 18446744073709551616.0);
    EXPECT_EQ(readNumber("0.1000000000000000055511151231257827"), 0.1);
    EXPECT_EQ(readNumber("0.30000000000000004440892098500626161"), 0.30000000000000004);
    EXPECT_EQ(readNumber("1e-400"), 0.0);
    EXPECT_EQ(readNumber("0.000000000000000000000000000000000001e-400"), 0.0);
}

TEST(JsonCoder, ATextThatIsNoJsonNumberIsUnreadable) {
    for (const char *text :
         {"01", "1.", ".5", "+1", "1e", "0x10", "NaN", "Infinity", "1e400",
          "100000000000000000000000000000000000000e300", "-", "1 2", "1_000", "--1"})
        EXPECT_EQ(readNumber(text), std::nullopt) << text;
}

TEST(JsonCoder, ANumberThatIsNotFiniteCannotBeWritten) {
    EXPECT_EQ(json::encode(Numbers{1.0, std::nan("")}), std::nullopt);
    EXPECT_EQ(json::encode(Numbers{-std::numeric_limits<double>::infinity()}), std::nullopt);
}

TEST(JsonCoder, NothingIsCoerced) {
    for (const char *value : {"0", "1", "\"true\"", "null", "[]", "{}", "tru", "truee", "True"})
        EXPECT_FALSE(json::decode<Flag>("{\"flag\":" + QByteArray(value) + '}').has_value())
            << value;
    for (const char *value : {"true", "\"1\"", "null", "[1]", "{}"})
        EXPECT_EQ(readNumber(value), std::nullopt) << value;
    for (const char *value : {"[1]", "[true]", "[null]", "[[]]", "[{}]", "\"a\"", "{}"})
        EXPECT_FALSE(json::decode<QStringList>(value).has_value()) << value;
}

TEST(JsonCoder, EscapesAreResolved) {
    EXPECT_EQ(readText(R"(\"\\\/\b\f\n\r\t\u0041\u00e9\u20AC)"), u"\"\\/\b\f\n\r\tA\u00e9\u20ac"_s);
    EXPECT_EQ(readText(R"(\ud83d\ude42)"), u"🙂"_s);
    EXPECT_EQ(readText(R"(a\u0000b)"), QString(u"a\0b"_s));
}

TEST(JsonCoder, InvalidEscapesAreUnreadable) {
    for (const char *text : {R"(\x41)", R"(\u12)", R"(\u12G4)", R"(\')", R"(\U0041)", R"(\)"})
        EXPECT_EQ(readText(text), std::nullopt) << text;
}

TEST(JsonCoder, HalfASurrogatePairIsUnreadable) {
    for (const char *text : {R"(\ud83d)", R"(\ude42)", R"(\ud83dx)", R"(\ud83d\n)",
                             R"(\ud83d\ud83d)", R"(\ude42\ud83d)", R"(\ud83d\u0041)"})
        EXPECT_EQ(readText(text), std::nullopt) << text;
}

TEST(JsonCoder, HalfASurrogatePairIsWrittenAsTheReplacementCharacter) {
    EXPECT_EQ(written(QString(QChar(0xD83D)) + u'x'), "[\"\uFFFDx\"]"_ba);
    EXPECT_EQ(written(u'x' + QString(QChar(0xDE42))), "[\"x\uFFFD\"]"_ba);
}

TEST(JsonCoder, InvalidUtf8IsUnreadable) {
    for (const char *text : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                             "\xF4\x90\x80\x80", "\xFF", "a\xF0\x9F\x99"})
        EXPECT_EQ(readText(text), std::nullopt);
    EXPECT_FALSE(isIgnored("\"\xFF\""));
}

TEST(JsonCoder, ControlCharactersInsideATextAreUnreadable) {
    for (const char c : {'\n', '\t', '\x01', '\x1F', '\0'})
        EXPECT_EQ(readText(QByteArray(1, c)), std::nullopt) << int{c};
    EXPECT_EQ(readText("\x7F"), u"\x7F"_s);
}

TEST(JsonCoder, OnlyWhatMustBeIsEscaped) {
    EXPECT_EQ(written(u"\"\\\b\f\n\r\t\u0001\u001F\u007F/é€🙂\u2028"_s),
              "[\"\\\"\\\\\\u0008\\u000C\\n\\r\\t\\u0001\\u001F\x7F/é€🙂\u2028\"]"_ba);
}

TEST(JsonCoder, TextsOfEveryLengthAndMixtureReadBackEqual) {
    for (qsizetype length = 0; length < 200; ++length) {
        const QString plain(length, u'p');
        for (const QString &foreign :
             {u""_s, u"\""_s, u"é"_s, u"🙂"_s, u"\n"_s, u"漢字"_s, u"\uFEFF"_s}) {
            for (const QString &text :
                 {plain + foreign, foreign + plain, plain + foreign + plain}) {
                const auto read = json::decode<QStringList>(written(text));
                ASSERT_TRUE(read.has_value()) << qPrintable(text);
                ASSERT_EQ(read->front(), text);
            }
        }
    }
}

TEST(JsonCoder, AnythingBehindTheDocumentMakesItUnreadable) {
    EXPECT_TRUE(json::decode<Numbers>("\n [1] \t\r\n").has_value());
    for (const char *document : {"[1]x", "[1] 2", "[1],", "[1]]", "[1][1]", "[1]\"", "[1]/**/"})
        EXPECT_FALSE(json::decode<Numbers>(document).has_value()) << document;
    EXPECT_FALSE(json::decode<Numbers>(QByteArray("[1]\0", 4)).has_value());
    EXPECT_FALSE(json::decode<Flag>("{\"flag\":true}}").has_value());
}

TEST(JsonCoder, UnbalancedDocumentsAreUnreadable) {
    for (const char *document : {"", "[", "]", "[1", "1]", "[1,", "[1}", "[,1]", "[1,]", "[1 2]"})
        EXPECT_FALSE(json::decode<Numbers>(document).has_value()) << document;
    for (const char *document :
         {"{", "{\"flag\"", "{\"flag\":", "{\"flag\":true", "{\"flag\":true,}", "{\"flag\" true}",
          "{flag:true}", "{\"flag\":true]", "{,\"flag\":true}"})
        EXPECT_FALSE(json::decode<Flag>(document).has_value()) << document;
}

TEST(JsonCoder, UnknownKeysAreIgnoredWhateverTheyHold) {
    for (const char *value : {"null", "true", "1", "\"text\"", "[]", "{}", "[1,[2,{\"a\":[]}]]",
                              "{\"flag\":\"inner\"}", "12345678901234567890123"})
        EXPECT_TRUE(isIgnored(value)) << value;
}

TEST(JsonCoder, AnIgnoredValueHasToBeValidAllTheSame) {
    for (const char *value : {"nul", "tru", "01", "[1,]", "{\"a\"}", "{\"a\":}", "\"\\x\"", "",
                              "[1 2]", "{1:2}", "{\"\\x\":1}", "'a'", "1e999"})
        EXPECT_FALSE(isIgnored(value)) << value;
}

TEST(JsonCoder, NestingWithoutEndIsUnreadableAndDoesNoHarm) {
    EXPECT_TRUE(isIgnored(QByteArray(500, '[') + QByteArray(500, ']')));
    EXPECT_FALSE(isIgnored(QByteArray(100000, '[') + QByteArray(100000, ']')));
    EXPECT_FALSE(isIgnored(QByteArray("{\"a\":").repeated(100000) + "1" + QByteArray(100000, '}')));
}

TEST(JsonCoder, OfARepeatedKeyTheLastCounts) {
    EXPECT_FALSE(json::decode<Flag>(R"({"flag":true,"flag":false})")->flag);
    EXPECT_FALSE(json::decode<Flag>(R"({"flag":1,"flag":false})").has_value());
}

TEST(JsonCoder, AKeyMayBeWrittenWithEscapes) {
    EXPECT_TRUE(json::decode<Flag>(R"({"fl\u0061g":true})")->flag);
}

TEST(JsonCoder, KeysAreMatchedWhole) {
    for (const char *key : {"fla", "flagg", "Flag", "flag ", ""})
        EXPECT_FALSE(json::decode<Flag>("{\"" + QByteArray(key) + "\":true}").has_value()) << key;
}

TEST(JsonCoder, ADocumentOfFiftyMegabytesOfTextIsRead) {
    const QByteArray text(50 << 20, 'x');
    EXPECT_EQ(json::decode<QStringList>("[\"" + text + "\"]")->front().size(), text.size());
    EXPECT_FALSE(json::decode<QStringList>("[\"" + text).has_value());
}
