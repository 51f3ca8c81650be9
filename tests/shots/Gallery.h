#pragma once

#include <QSize>
#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <functional>

class QQuickItem;
class QQuickView;

namespace tarne::shots {

/// Draws screens into the pictures of `docs/shots`, in software and off screen.
///
/// A function of the list in main.cpp makes the pictures of one screen: it prepares view objects
/// over fakes and seeded data and calls `take` for each picture.
class Gallery {
public:
    /// Pictures go to `folder`; a picture that cannot be drawn or saved is reported on standard
    /// error.
    explicit Gallery(QString folder);
    ~Gallery();

    /// Shows the QML document at `url` with its required `properties`, lets `prepare` bring it to
    /// the state that is wanted, waits until what moves has come to rest, and saves `name`.png.
    void take(const QString &name, const QUrl &url, const QVariantMap &properties,
              const std::function<void(QQuickView &)> &prepare = {},
              const QSize &size = QSize(1000, 700));

    /// Whether every picture was saved.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    QString m_folder;
    bool m_isComplete = true;
};

/// Handles events for as long as the longest transition of a screen lasts.
void letRest();

} // namespace tarne::shots
