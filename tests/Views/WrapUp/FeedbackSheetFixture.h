#pragma once

#include "WrapUpFixture.h"

namespace tarne::test {

/// The feedback sheet in a window that has room for all of it.
class FeedbackSheetLayout : public WrapUpScreenTest {
protected:
    using Fonts = TARNEStyle::Typography;

    void open(const QString &goals = QStringLiteral("Review"), const QList<int> &verdicts = {0}) {
        ui().view().resize(1000, 900);
        openReflection(goals);
        for (int row = 0; row < verdicts.size(); ++row)
            sheet().rate(row, verdicts[row]);
        sheet().setReflection(QStringLiteral("Fine"));
        sheet().completeReflection();
        awaitRequest();
        layOut();
    }
    QRectF panel() { return LayoutProbe::place(feedbackPanel()); }
    QRectF text(const QString &text) { return LayoutProbe::place(textItem(text)); }
    QQuickItem &textItem(const QString &text) {
        QQuickItem *const found = ui().findText(text);
        return found ? *found : probe().item(text);
    }

    /// The card that holds the text.
    const QQuickItem &cardOf(const QString &text) {
        const QQuickItem *item = &textItem(text);
        while (item && !item->property("cornerRadius").isValid())
            item = item->parentItem();
        return item ? *item : feedbackPanel();
    }
    QRectF card(const QString &text) { return LayoutProbe::place(cardOf(text)); }
    const QQuickItem &background(const QString &button) {
        const auto *const ground =
            probe().item(button).property("background").value<QQuickItem *>();
        EXPECT_TRUE(ground) << qPrintable(button);
        return ground ? *ground : feedbackPanel();
    }
};

} // namespace tarne::test
