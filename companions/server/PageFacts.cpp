#include "PageFacts.h"

#include "ProtocolLimits.h"

#include <QCryptographicHash>
#include <QUrl>

#include <algorithm>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

bool fits(const QString &text, std::size_t limit) {
    return static_cast<std::size_t>(text.size()) <= limit;
}

bool isControl(QChar c) {
    return c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

QString withoutControls(QString text) {
    std::ranges::replace_if(text, isControl, u' ');
    return text;
}

/// Whether the text is what a browser calls a page's origin, and nothing else.
bool isOrigin(const QString &text) {
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return false;
    QUrl bare;
    bare.setScheme(url.scheme());
    bare.setHost(url.host());
    bare.setPort(url.port());
    return (url.scheme() == "http"_L1 || url.scheme() == "https"_L1) &&
           bare.toString(QUrl::FullyEncoded) == text;
}

bool isPath(const QString &text) {
    return text.startsWith(u'/') && !text.contains(u'?') && !text.contains(u'#') &&
           std::ranges::none_of(text, isControl);
}

QByteArray hashOf(std::initializer_list<QString> texts) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &text : texts) {
        const QByteArray bytes = text.toUtf8();
        // With its length, so that no text can pass for the end of the one before it.
        hash.addData(QByteArray::number(bytes.size()) + ':' + bytes);
    }
    return hash.result();
}

} // namespace

std::optional<PageFacts> checked(PageFacts facts) {
    if (!fits(facts.origin, limits::origin) || !fits(facts.path, limits::path) ||
        !fits(facts.title, limits::title) || !fits(facts.description, limits::description) ||
        !isOrigin(facts.origin) || !isPath(facts.path))
        return std::nullopt;
    facts.title = withoutControls(std::move(facts.title));
    facts.description = withoutControls(std::move(facts.description));
    return facts;
}

QString hostAndPath(const PageFacts &facts) {
    return facts.origin.sliced(facts.origin.indexOf("://"_L1) + 3) + facts.path;
}

QByteArray questionKey(const QString &goals, const PageFacts &facts) {
    return hashOf({goals, facts.origin, facts.path, facts.title, facts.description});
}

QByteArray overrideKey(const QString &goals, const PageFacts &facts) {
    return hashOf({goals, facts.origin, facts.path, facts.title});
}

} // namespace tarne
