#include "UiDriver.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <gtest/gtest.h>
#include <private/qguiapplication_p.h>
#include <private/qquickwindow_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <qpa/qwindowsysteminterface.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne::test {

namespace {

/// As when an assistive tool runs: controls set up part of what they tell only then, and nothing is
/// told before. The public QAccessible::setActive does the first alone.
void activateAccessibility() {
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
}

bool isVisible(const QAccessibleInterface &node) {
    return !node.state().invisible;
}

/// Visits the nodes below `node` in the order of the tree until `visit` returns true.
bool walk(QAccessibleInterface *node, const std::function<bool(QAccessibleInterface &)> &visit) {
    if (!node || !node->isValid())
        return false;
    if (visit(*node))
        return true;
    for (int index = 0; index < node->childCount(); ++index) {
        if (walk(node->child(index), visit))
            return true;
    }
    return false;
}

bool matches(const QAccessibleInterface &node, QAccessible::Role role) {
    return role == QAccessible::NoRole || node.role() == role;
}

} // namespace

UiDriver::UiDriver(const QString &qml, const QSize &size) : m_view(std::make_unique<QQuickView>()) {
    activateAccessibility();
    m_view->engine()->addImportPath(u"qrc:/qt/qml"_s);
    QQmlComponent component(m_view->engine());
    component.setData(qml.toUtf8(), QUrl(u"qrc:/test.qml"_s));
    QObject *const root = component.create();
    if (!root) {
        ADD_FAILURE() << qPrintable(component.errorString());
        return;
    }
    m_view->setContent(QUrl(), nullptr, root);
    show(size);
}

UiDriver::UiDriver(const QUrl &url, const QVariantMap &properties, const QSize &size)
    : m_view(std::make_unique<QQuickView>()) {
    activateAccessibility();
    m_view->engine()->addImportPath(u"qrc:/qt/qml"_s);
    m_view->setInitialProperties(properties);
    m_view->setSource(url);
    for (const QQmlError &error : m_view->errors())
        ADD_FAILURE() << qPrintable(error.toString());
    show(size);
}

UiDriver::~UiDriver() {
    // What a Loader has made is deleted later, and must go while its engine is there.
    delete root();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void UiDriver::show(const QSize &size) {
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->resize(size);
    m_view->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_view.get()));
    settle();
}

QQuickItem *UiDriver::root() const {
    return m_view->rootObject();
}

QAccessibleInterface *UiDriver::accessible(const QString &name) const {
    QQuickItem *const item = find(name);
    return item ? QAccessible::queryAccessibleInterface(item) : nullptr;
}

QQuickItem *UiDriver::find(const QString &name, QAccessible::Role role) const {
    QQuickItem *found = nullptr;
    walk(QAccessible::queryAccessibleInterface(m_view.get()), [&](QAccessibleInterface &node) {
        if (!isVisible(node) || !matches(node, role) || node.text(QAccessible::Name) != name)
            return false;
        found = qobject_cast<QQuickItem *>(node.object());
        return found != nullptr;
    });
    return found;
}

QQuickItem *UiDriver::findText(const QString &text) const {
    for (const auto role :
         {QAccessible::Heading, QAccessible::StaticText, QAccessible::Notification}) {
        if (QQuickItem *const found = find(text, role))
            return found;
    }
    return nullptr;
}

bool UiDriver::isEnabled(const QString &name, QAccessible::Role role) const {
    QQuickItem *const item = find(name, role);
    EXPECT_TRUE(item) << "nothing is named " << qPrintable(name);
    return item && !QAccessible::queryAccessibleInterface(item)->state().disabled;
}

bool UiDriver::has(const QString &name, QAccessible::Role role) const {
    return find(name, role);
}

QStringList UiDriver::namesOf(std::initializer_list<QAccessible::Role> roles) const {
    QStringList result;
    walk(QAccessible::queryAccessibleInterface(m_view.get()), [&](QAccessibleInterface &node) {
        const bool isWanted =
            std::ranges::any_of(roles, [&](QAccessible::Role role) { return matches(node, role); });
        if (node.object() != m_view.get() && isVisible(node) && isWanted)
            result.append(node.text(QAccessible::Name));
        return false;
    });
    return result;
}

QStringList UiDriver::names(QAccessible::Role role) const {
    return namesOf({role});
}

QStringList UiDriver::texts() const {
    return namesOf({QAccessible::Heading, QAccessible::StaticText, QAccessible::Notification});
}

namespace {

QPoint middleOf(const QQuickItem &item) {
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
}

} // namespace

QPointF UiDriver::middleOf(const QString &name, QAccessible::Role role) const {
    const QQuickItem *const item = find(name, role);
    EXPECT_TRUE(item) << "nothing is named " << qPrintable(name);
    layOut();
    return item ? tarne::test::middleOf(*item) : QPoint();
}

bool UiDriver::click(const QString &name, QAccessible::Role role) {
    QQuickItem *const item = find(name, role);
    if (!item)
        return false;
    layOut();
    clickAt(tarne::test::middleOf(*item));
    return true;
}

void UiDriver::clickAt(const QPointF &position) {
    hover(position);
    press(position);
    release(position);
}

void UiDriver::press(const QPointF &position) {
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, position.toPoint());
    settle();
}

void UiDriver::release(const QPointF &position) {
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, position.toPoint());
    settle();
}

void UiDriver::clickAgainAt(const QPointF &position) {
    // A release of QTest's sets its clock on, so that no two clicks are a double click.
    QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval - 80;
    press(position);
    release(position);
}

void UiDriver::hover(const QPointF &position) {
    QTest::mouseMove(m_view.get(), position.toPoint());
    settle();
}

void UiDriver::wheel(const QPointF &position, int degrees) {
    QWheelEvent event(position, m_view->mapToGlobal(position), QPoint(), QPoint(0, degrees * 8),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QGuiApplication::sendEvent(m_view.get(), &event);
    settle();
}

Qt::CursorShape UiDriver::cursorOver(const QString &name) {
    const QQuickItem *const item = find(name);
    if (!item) {
        ADD_FAILURE() << "nothing is named " << qPrintable(name);
        return Qt::BlankCursor;
    }
    hover(tarne::test::middleOf(*item));
    return m_view->cursor().shape();
}

void UiDriver::type(const QString &text) {
    for (const QChar character : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, character);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, character);
        QGuiApplication::sendEvent(m_view.get(), &press);
        QGuiApplication::sendEvent(m_view.get(), &release);
    }
    settle();
}

void UiDriver::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(m_view.get(), key, modifiers);
    settle();
}

void UiDriver::sendKey(Qt::Key key, QEvent::Type type, bool isRepeat) {
    const QString text = key == Qt::Key_Space ? u" "_s : u"\r"_s;
    QKeyEvent event(type, key, Qt::NoModifier, text, isRepeat);
    QGuiApplication::sendEvent(m_view.get(), &event);
    settle();
}

void UiDriver::holdKey(Qt::Key key, int repeats) {
    sendKey(key, QEvent::KeyPress, false);
    repeatKey(key, repeats);
}

void UiDriver::repeatKey(Qt::Key key, int repeats) {
    for (int repeat = 0; repeat < repeats; ++repeat) {
        sendKey(key, QEvent::KeyRelease, true);
        sendKey(key, QEvent::KeyPress, true);
    }
}

void UiDriver::releaseKey(Qt::Key key) {
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
    QGuiApplication::sendEvent(m_view.get(), &release);
    settle();
}

namespace {

/// Notes the keys that come through to a window, which are those that no shortcut has taken, and
/// keeps them from what has the focus: Space presses that, with Alt too.
class KeyNotes final : public QObject {
public:
    QSet<int> keys;

    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::KeyPress)
            keys.insert(static_cast<QKeyEvent *>(event)->key());
        return event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    }
};

} // namespace

QString UiDriver::mnemonics() {
    KeyNotes notes;
    m_view->installEventFilter(&notes);
    QString taken;
    for (const QChar character : u"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 "_s) {
        const auto key = static_cast<Qt::Key>(character.unicode());
        QTest::keyClick(m_view.get(), key, Qt::AltModifier);
        if (!notes.keys.contains(key))
            taken += character;
    }
    settle();
    return taken;
}

void UiDriver::tab() {
    key(Qt::Key_Tab);
}
void UiDriver::backtab() {
    key(Qt::Key_Backtab, Qt::ShiftModifier);
}

QString UiDriver::focusedName() const {
    QQuickItem *const item = m_view->activeFocusItem();
    QAccessibleInterface *const node = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    return node ? node->text(QAccessible::Name) : QString();
}

void UiDriver::activate(QWindow &window, Qt::FocusReason reason) {
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    QWindowSystemInterface::handleWindowActivated(&window, reason);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    settle();
}

void UiDriver::leaveWindow(Qt::FocusReason reason) {
    if (!m_otherWindow) {
        m_otherWindow = std::make_unique<QWindow>();
        m_otherWindow->setFlag(Qt::WindowDoesNotAcceptFocus); // Not as it is shown.
        m_otherWindow->resize(200, 200);
    }
    activate(*m_otherWindow, reason);
    EXPECT_FALSE(m_view->isActive());
}

void UiDriver::returnToWindow(Qt::FocusReason reason) {
    activate(*m_view, reason);
}

bool UiDriver::waitUntil(const std::function<bool()> &condition) {
    if (!QTest::qWaitFor(condition, 20'000))
        return false;
    // On a busy machine the last step of an animation is a long one: what it moves stands where it
    // belongs once a frame has been laid out.
    m_view->grabWindow();
    return true;
}

void UiDriver::layOut() const {
    QQuickWindowPrivate::get(m_view.get())->polishItems();
}

void UiDriver::settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

QImage UiDriver::picture() {
    settle();
    return m_view->grabWindow();
}

bool UiDriver::grab(const QString &path) {
    return picture().save(path);
}

} // namespace tarne::test
