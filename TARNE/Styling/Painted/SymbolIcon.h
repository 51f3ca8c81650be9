#pragma once

#include "TextureItem.h"

#include <QColor>
#include <QFont>

namespace tarne {

/// A system symbol by its name, drawn from the outline that stands for it here, as a square of
/// `size` points in any colour. A name without an outline is a mistake of ours: it is reported and
/// draws nothing.
///
/// It is a picture beside a text and not an accessible node of its own.
class SymbolIcon : public tarne::TextureItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString symbol MEMBER m_symbol WRITE setSymbol NOTIFY looksChanged FINAL)
    Q_PROPERTY(double size MEMBER m_size WRITE setSymbolSize NOTIFY looksChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color WRITE setColor NOTIFY looksChanged FINAL)
    /// A font weight such as `Font.Medium`: the outline's strokes grow with it.
    Q_PROPERTY(int weight MEMBER m_weight WRITE setWeight NOTIFY looksChanged FINAL)
    /// Hierarchical rendering: the enclosing shape steps back, its sign keeps the full colour.
    Q_PROPERTY(
        bool hierarchical MEMBER m_isHierarchical WRITE setHierarchical NOTIFY looksChanged FINAL)

public:
    explicit SymbolIcon(QQuickItem *parent = nullptr);

    void setSymbol(const QString &symbol);
    void setSymbolSize(double size);
    void setColor(const QColor &color);
    void setWeight(int weight);
    void setHierarchical(bool isHierarchical);

    /// Every symbol name that has an outline.
    [[nodiscard]] static QStringList symbols();

Q_SIGNALS:
    void looksChanged();

protected:
    QImage paintPicture(double devicePixelRatio) override;

private:
    template <typename Value>
    void assign(Value &member, const Value &value);

    QString m_symbol;
    double m_size = 0;
    QColor m_color;
    int m_weight = QFont::Normal;
    bool m_isHierarchical = false;
};

} // namespace tarne
