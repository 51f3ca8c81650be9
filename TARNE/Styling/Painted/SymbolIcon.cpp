#include "SymbolIcon.h"

#include "StyleLog.h"
#include "SymbolTable.h"
#include "TARNEStyle.h"

#include <QFile>
#include <QFont>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

/// The outlines are drawn on a grid of 16 units in strokes of about one unit; this much is added to
/// their edges for each step of 100 in weight.
constexpr double strokePerWeightStep = 0.18;

/// How much of the colour the enclosing shape keeps in hierarchical rendering.
constexpr double hierarchicalOpacity = 0.22;

QByteArray outline(QLatin1StringView file, int weight) {
    QFile resource(u":/tarne/symbols/"_s + file + u".svg"_s);
    if (!resource.open(QIODevice::ReadOnly)) {
        qCWarning(styleLog) << "no outline for the symbol file" << file;
        return {};
    }
    QByteArray svg = resource.readAll();
    if (weight > QFont::Normal) {
        const double width = (weight - QFont::Normal) / 100.0 * strokePerWeightStep;
        svg.replace(R"(fill="currentColor")", R"(fill="black" stroke="black" stroke-width=")" +
                                                  QByteArray::number(width) + '"');
    } else {
        svg.replace(R"(fill="currentColor")", R"(fill="black")");
    }
    return svg;
}

void drawOutline(QPainter &painter, const QRectF &target, QLatin1StringView file, int weight,
                 double opacity) {
    const QByteArray svg = outline(file, weight);
    if (svg.isEmpty())
        return;
    QSvgRenderer renderer(svg);
    painter.setOpacity(opacity);
    renderer.render(&painter, target);
}

} // namespace

SymbolIcon::SymbolIcon(QQuickItem *parent)
    : TextureItem(parent), m_color(TARNEStyle::Colors::primaryText) {
    setSymbolSize(TARNEStyle::Typography::FontSize::body);
}

template <typename Value>
void SymbolIcon::assign(Value &member, const Value &value) {
    if (member == value)
        return;
    member = value;
    repaint();
    Q_EMIT looksChanged();
}

void SymbolIcon::setSymbol(const QString &symbol) {
    assign(m_symbol, symbol);
}

void SymbolIcon::setSymbolSize(double size) {
    setImplicitSize(size, size);
    assign(m_size, size);
}

void SymbolIcon::setColor(const QColor &color) {
    assign(m_color, color);
}
void SymbolIcon::setWeight(int weight) {
    assign(m_weight, weight);
}
void SymbolIcon::setHierarchical(bool isHierarchical) {
    assign(m_isHierarchical, isHierarchical);
}

QStringList SymbolIcon::symbols() {
    QStringList names;
    for (const SymbolOutline &entry : symbolTable())
        names.append(entry.symbol);
    return names;
}

QImage SymbolIcon::paintPicture(double devicePixelRatio) {
    if (m_symbol.isEmpty())
        return {};
    const SymbolOutline *entry = symbolOutline(m_symbol);
    if (!entry) {
        qCWarning(styleLog) << "no outline for the symbol" << m_symbol;
        return {};
    }
    QImage image((size() * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(devicePixelRatio);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);

    const QRectF box = boundingRect();
    if (m_isHierarchical && !entry->enclosing.isEmpty()) {
        drawOutline(painter, box, entry->enclosing, QFont::Normal, hierarchicalOpacity);
        const double inset = box.width() * 0.29;
        drawOutline(painter, box.adjusted(inset, inset, -inset, -inset), entry->sign, QFont::Bold,
                    1.0);
    } else {
        const double margin = box.width() * (entry->zoom - 1) / 2;
        drawOutline(painter, box.adjusted(-margin, -margin, margin, margin), entry->file, m_weight,
                    1.0);
    }
    painter.setOpacity(1.0);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(box, m_color);
    return image;
}

} // namespace tarne
