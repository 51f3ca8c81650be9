#include "Appcast.h"

#include "VersionOrder.h"

#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

constexpr std::size_t maximumItems = 10'000;
constexpr qsizetype maximumFieldLength = 4'096;
constexpr int maximumDepth = 32;

/// Pages are opened in a browser, so nothing but web addresses may come through.
QUrl webPage(const QString &text) {
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    const bool isWeb = url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
    return url.isValid() && isWeb && !url.host().isEmpty() ? url : QUrl();
}

/// Walks one document; every operation stands on a start element and leaves behind its end.
class AppcastReader {
public:
    explicit AppcastReader(const QByteArray &document) : m_xml(document) {}

    std::optional<std::vector<AppcastRelease>> read() {
        if (!enterNext() || m_xml.name() != "rss"_L1)
            return std::nullopt;
        forEachChild([this](QStringView name) {
            if (name == "channel"_L1)
                readChannel();
            else
                skip();
        });
        while (!m_xml.atEnd())
            m_xml.readNext();
        if (m_xml.hasError())
            return std::nullopt;
        for (AppcastRelease &release : m_releases) {
            if (release.page.isEmpty())
                release.page = m_channelPage;
        }
        return std::move(m_releases);
    }

private:
    bool enterNext() {
        while (!m_xml.atEnd()) {
            const auto token = m_xml.readNext();
            if (token == QXmlStreamReader::DTD)
                m_xml.raiseError(u"document type"_s);
            if (token == QXmlStreamReader::StartElement)
                return true;
            if (token == QXmlStreamReader::EndElement)
                return false;
        }
        return false;
    }

    template <typename Handle>
    void forEachChild(const Handle &handle) {
        if (++m_depth > maximumDepth)
            m_xml.raiseError(u"depth"_s);
        while (enterNext())
            handle(m_xml.name());
        --m_depth;
    }

    void skip() {
        forEachChild([this](QStringView) { skip(); });
    }

    QString readField() {
        QString text;
        int depth = 0;
        while (!m_xml.atEnd()) {
            const auto token = m_xml.readNext();
            if (token == QXmlStreamReader::StartElement && ++depth > maximumDepth)
                m_xml.raiseError(u"depth"_s);
            if (token == QXmlStreamReader::EndElement && depth-- == 0)
                break;
            if (token == QXmlStreamReader::Characters && depth == 0)
                text += m_xml.text();
            if (text.size() > maximumFieldLength)
                m_xml.raiseError(u"field"_s);
        }
        return text.trimmed();
    }

    void readChannel() {
        forEachChild([this](QStringView name) {
            if (name == "item"_L1)
                readItem();
            else if (name == "link"_L1 && m_channelPage.isEmpty())
                m_channelPage = webPage(readField());
            else
                skip();
        });
    }

    void readItem() {
        AppcastRelease release;
        QUrl enclosure;
        forEachChild([&](QStringView name) {
            if (name == "version"_L1)
                release.version = readField();
            else if (name == "shortVersionString"_L1)
                release.displayVersion = readField();
            else if (name == "link"_L1)
                release.page = webPage(readField());
            else if (name == "enclosure"_L1)
                enclosure = readEnclosure(release);
            else
                skip();
        });
        if (release.version.isEmpty())
            return;
        if (m_releases.size() == maximumItems)
            return m_xml.raiseError(u"items"_s);
        if (release.displayVersion.isEmpty())
            release.displayVersion = release.version;
        if (release.page.isEmpty())
            release.page = enclosure;
        m_releases.push_back(std::move(release));
    }

    /// Version elements of the item win over the enclosure's attributes.
    QUrl readEnclosure(AppcastRelease &release) {
        QUrl address;
        const auto attributes = m_xml.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            if (attribute.value().size() > maximumFieldLength)
                m_xml.raiseError(u"field"_s);
            const QString value = attribute.value().trimmed().toString();
            if (attribute.name() == "version"_L1 && release.version.isEmpty())
                release.version = value;
            else if (attribute.name() == "shortVersionString"_L1 &&
                     release.displayVersion.isEmpty())
                release.displayVersion = value;
            else if (attribute.name() == "url"_L1)
                address = webPage(value);
        }
        skip();
        return address;
    }

    QXmlStreamReader m_xml;
    int m_depth = 0;
    QUrl m_channelPage;
    std::vector<AppcastRelease> m_releases;
};

} // namespace

std::optional<std::vector<AppcastRelease>> parseAppcast(const QByteArray &document) {
    return AppcastReader(document).read();
}

std::optional<AppcastRelease> newestRelease(const std::vector<AppcastRelease> &releases) {
    const auto newest =
        std::ranges::max_element(releases, [](const AppcastRelease &a, const AppcastRelease &b) {
            return compareVersions(a.version, b.version) < 0;
        });
    return newest == releases.end() ? std::nullopt : std::optional(*newest);
}

} // namespace tarne
