#include "PortalWishes.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

const DBusAddress portal{u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                         u"org.freedesktop.portal.Settings"_s};

constexpr QLatin1StringView common{"org.freedesktop.appearance"};
constexpr QLatin1StringView gnome{"org.gnome.desktop.interface"};
constexpr QLatin1StringView gnomeAccessibility{"org.gnome.desktop.a11y.interface"};
constexpr QLatin1StringView kde{"org.kde.kdeglobals.KDE"};

/// Some portals wrap a value twice.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

bool isBoolean(const QVariant &value, bool expected) {
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool() == expected;
}

bool isOne(const QVariant &value) {
    return value.metaType() == QMetaType::fromType<uint>() && value.toUInt() == 1;
}

/// KDE's settings are texts.
bool isZero(const QVariant &value) {
    bool isNumber = false;
    return value.toDouble(&isNumber) == 0.0 && isNumber;
}

double scaleOf(const QVariant &value) {
    const double scale = value.toDouble();
    return std::isfinite(scale) && scale > 0 ? scale : 1.0;
}

bool isDrawnByX11() {
    return QGuiApplication::platformName() == u"xcb"_s && QGuiApplication::primaryScreen();
}

/// Under Wayland a compositor scales windows for their screens, and no text scale is part of that.
double scaleOfFontResolution() {
    return isDrawnByX11() ? QGuiApplication::primaryScreen()->devicePixelRatio() : 1.0;
}

} // namespace

double textScaleLeft(double textScale, double drawnScale) {
    const double windowScale = drawnScale / textScale;
    // The resolution is a whole number of dots, so it holds the scale to a hundredth.
    const bool isDrawn =
        windowScale > 0.99 && std::abs(windowScale - std::round(windowScale)) < 0.02;
    return isDrawn ? 1.0 : std::clamp(textScale, 1.0, DesktopWishes::largestTextScale);
}

PortalWishes::PortalWishes(QDBusConnection sessionBus, Changed changed)
    : PortalWishes(std::move(sessionBus), scaleOfFontResolution, std::move(changed)) {
    // With another resolution a screen holds another number of points. The portal may tell of the
    // text scale before the resolution follows.
    if (isDrawnByX11())
        connect(QGuiApplication::primaryScreen(), &QScreen::geometryChanged, this,
                &PortalWishes::tell);
}

PortalWishes::PortalWishes(QDBusConnection sessionBus, DrawnScale drawnScale, Changed changed)
    : m_portal(sessionBus, portal),
      m_drawnScale(std::move(drawnScale)),
      m_changed(std::move(changed)) {
    // The bus's library ends the program that wants to hear something of a bus that is gone.
    if (sessionBus.isConnected())
        sessionBus.connect(portal.service, portal.path, portal.interface, u"SettingChanged"_s, this,
                           SLOT(handleChange(QDBusMessage)));
    connect(&m_portal, &DBusService::appeared, this, &PortalWishes::ask);
    ask();
}

void PortalWishes::ask() {
    const QStringList groups{common, gnome, gnomeAccessibility, kde};
    m_changedMeanwhile.emplace();
    const auto handleAnswer = [this, asked = ++m_asked](const QDBusMessage &reply) {
        if (asked != m_asked)
            return;
        const auto changes = std::exchange(m_changedMeanwhile, std::nullopt);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != u"a{sa{sv}}"_s)
            return;
        m_settings = {};
        const auto values = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
        for (auto group = values.begin(); group != values.end(); ++group) {
            for (auto entry = group->begin(); entry != group->end(); ++entry)
                note({group.key(), entry.key(), unwrapped(entry.value())});
        }
        for (const Change &change : *changes)
            note(change);
        tell();
    };
    // At a login the portal takes seconds to start, and it is asked only once.
    m_portal.call(u"ReadAll"_s, {groups}, this, handleAnswer, DBusService::Patience::Endless);
}

void PortalWishes::handleChange(const QDBusMessage &signal) {
    if (signal.signature() != u"ssv"_s)
        return;
    const QVariantList arguments = signal.arguments();
    const Change change{arguments[0].toString(), arguments[1].toString(), unwrapped(arguments[2])};
    if (m_changedMeanwhile)
        m_changedMeanwhile->push_back(change);
    note(change);
    tell();
}

void PortalWishes::note(const Change &change) {
    const auto &[group, key, value] = change;
    if (group == common && key == u"reduced-motion"_s)
        m_settings.reducedMotion = isOne(value);
    else if (group == common && key == u"contrast"_s)
        m_settings.contrastMore = isOne(value);
    else if (group == gnome && key == u"enable-animations"_s)
        m_settings.noAnimations = isBoolean(value, false);
    else if (group == gnome && key == u"text-scaling-factor"_s)
        m_settings.textScale = scaleOf(value);
    else if (group == gnomeAccessibility && key == u"high-contrast"_s)
        m_settings.highContrast = isBoolean(value, true);
    else if (group == kde && key == u"AnimationDurationFactor"_s)
        m_settings.noDuration = isZero(value);
}

void PortalWishes::tell() {
    const DesktopWishes wishes{.reducedMotion = m_settings.reducedMotion ||
                                                m_settings.noAnimations || m_settings.noDuration,
                               .contrastMore = m_settings.contrastMore || m_settings.highContrast,
                               .textScale = textScaleLeft(m_settings.textScale, m_drawnScale())};
    if (wishes == m_wishes)
        return;
    m_wishes = wishes;
    m_changed(wishes);
}

} // namespace tarne
