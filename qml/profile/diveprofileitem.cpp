// SPDX-License-Identifier: MIT
#include "diveprofileitem.h"

#include <QtCore/qlocale.h>
#include <QtGui/qaccessible.h>
#include <QtGui/qevent.h>
#include <QtGui/qguiapplication.h>
#include <QtGui/qpainter.h>
#include <QtGui/qstylehints.h>

#include <algorithm>
#include <cmath>

#include <varda/diveprofile.h>

#include "profileoverlay_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPictureText = 12; // pixels that a label of a DivePicture is high
constexpr double kShortest = 10;    // seconds that are shown
constexpr double kZoomOfKey = 1.5;
constexpr double kZoomOfWheel = 1.25; // for each step that can be felt
constexpr double kFarStep = 0.1;      // of what is shown

/** "41:55", or "1:02:03" from an hour on. */
QString durationText(double seconds)
{
    const auto whole = qint64(std::round(seconds));
    const auto twoDigits = [](qint64 number) { return u"%1"_s.arg(number, 2, 10, QChar(u'0')); };
    const QString rest = u':' + twoDigits(whole % 60);
    if (whole < 3600)
        return QString::number(whole / 60) + rest;
    return QString::number(whole / 3600) + u':' + twoDigits(whole / 60 % 60) + rest;
}

QString minutesText(double seconds)
{
    return QLocale().toString(std::lround(seconds / 60)) + u" min"_s;
}

/** The attached object that a QML document names Accessible: Qt has no other way to it. */
QObject *accessibleOf(QQuickItem *item)
{
    const QMetaObject *type = QMetaType::fromName("QQuickAccessibleAttached*").metaObject();
    if (!type)
        return nullptr;
    return qmlAttachedPropertiesObject(item, qmlAttachedPropertiesFunction(item, type), true);
}

/** Sets one of its texts, unless the application has set it. */
void setText(QObject *accessible, const char *property, QString &own, const QString &text)
{
    if (accessible->property(property).toString() != own)
        return;
    own = text;
    accessible->setProperty(property, text);
}

} // namespace

DiveProfileItem::DiveProfileItem(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    m_options.header = false;
    setImplicitSize(480, 300);
    applyInteraction();
}

DiveProfileItem::~DiveProfileItem() = default;

// What is drawn

void DiveProfileItem::setDive(const Dive &dive)
{
    m_dive = dive;
    // A new dive is shown from its begin; at first, a part may have been asked for.
    if (isComponentComplete()) {
        m_options.from = 0;
        m_options.to = 0;
    }
    refreshContent();
    Q_EMIT diveChanged();
}

QVariantList DiveProfileItem::others() const
{
    QVariantList list;
    for (const Dive &dive : m_others)
        list.append(QVariant::fromValue(dive));
    return list;
}

void DiveProfileItem::setOthers(const QVariantList &others)
{
    m_others.clear();
    for (const QVariant &each : others) {
        if (each.metaType() == QMetaType::fromType<Dive>())
            m_others.append(each.value<Dive>());
    }
    refreshContent();
    Q_EMIT othersChanged();
}

void DiveProfileItem::setNames(const QStringList &names)
{
    if (m_options.names == names)
        return;
    m_options.names = names;
    refresh();
    Q_EMIT namesChanged();
}

void DiveProfileItem::setUnits(Units units)
{
    if (this->units() == units)
        return;
    m_options.units = PictureOptions::Units(units);
    refresh();
    Q_EMIT unitsChanged();
    Q_EMIT summaryChanged();
}

void DiveProfileItem::setTheme(Theme theme)
{
    if (this->theme() == theme)
        return;
    m_options.theme = PictureOptions::Theme(theme);
    refresh();
    Q_EMIT themeChanged();
}

void DiveProfileItem::setFontFamily(const QString &family)
{
    if (fontFamily() == family)
        return;
    m_options.fontFamily = family;
    refresh();
    Q_EMIT fontFamilyChanged();
}

void DiveProfileItem::setTextSize(double pixels)
{
    const double bounded = pixels >= 4 ? std::min(pixels, 100.0) : 4;
    if (qFuzzyCompare(m_textSize, bounded))
        return;
    m_textSize = bounded;
    refresh();
    Q_EMIT textSizeChanged();
}

void DiveProfileItem::setBackground(const QColor &colour)
{
    if (background() == colour)
        return;
    m_options.background = colour;
    refresh();
    Q_EMIT backgroundChanged();
}

void DiveProfileItem::setThumbnail(bool isThumbnail)
{
    if (m_isThumbnail == isThumbnail)
        return;
    m_isThumbnail = isThumbnail;
    setImplicitSize(isThumbnail ? 96 : 480, isThumbnail ? 32 : 300);
    applyInteraction();
    refresh();
    Q_EMIT thumbnailChanged();
}

void DiveProfileItem::setInteractive(bool isInteractive)
{
    if (m_isInteractive == isInteractive)
        return;
    m_isInteractive = isInteractive;
    applyInteraction();
    Q_EMIT interactiveChanged();
}

void DiveProfileItem::applyInteraction()
{
    const bool isActive = m_isInteractive && !m_isThumbnail;
    setAcceptedMouseButtons(isActive ? Qt::LeftButton : Qt::NoButton);
    setAcceptHoverEvents(isActive);
    setAcceptTouchEvents(isActive);
    setActiveFocusOnTab(isActive);
    if (!isActive)
        moveCursor(std::nullopt);
}

void DiveProfileItem::refreshContent()
{
    refresh();
    moveCursor(std::nullopt);
    Q_EMIT rangeChanged();
    Q_EMIT summaryChanged();
}

/** Draws it again, once. */
void DiveProfileItem::refresh()
{
    m_picture.reset();
    if (!isComponentComplete())
        return;
    describe();
    placeCursor();
    update();
}

void DiveProfileItem::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    refresh();
}

void DiveProfileItem::geometryChange(const QRectF &now, const QRectF &before)
{
    QQuickPaintedItem::geometryChange(now, before);
    if (now.size() == before.size())
        return;
    m_picture.reset();
    if (m_focus)
        m_focus->setSize(now.size());
    placeCursor();
    update();
}

const DivePicture &DiveProfileItem::picture() const
{
    if (!m_picture) {
        PictureOptions options = m_options;
        const double scale = m_isThumbnail ? 1 : m_textSize / kPictureText;
        options.size = QSize(int(std::ceil(width() / scale)), int(std::ceil(height() / scale)));
        options.nothing = tr("no samples");
        if (m_isThumbnail) {
            options.background = Qt::transparent;
            m_picture = DivePicture::thumbnail(m_dive, options);
        } else if (m_others.isEmpty()) {
            m_picture = DivePicture::profile(m_dive, options);
        } else {
            m_picture = DivePicture::comparison(QList<Dive>{m_dive} + m_others, options);
        }
    }
    return *m_picture;
}

/** Of the picture's pixels; those that it has at least may be more than there are here. */
double DiveProfileItem::pixelScale() const
{
    const double wanted = m_isThumbnail ? 1 : m_textSize / kPictureText;
    const QSizeF size = picture().size();
    return std::min(
        {wanted, (width() + wanted) / size.width(), (height() + wanted) / size.height()});
}

void DiveProfileItem::paint(QPainter *painter)
{
    const DivePicture &drawn = picture();
    painter->scale(pixelScale(), pixelScale());
    drawn.paint(painter, QRectF(QPointF(0, 0), drawn.size()));
}

QColor DiveProfileItem::lineColor(int dive) const
{
    return picture().lineColor(dive);
}

// The part that is shown

double DiveProfileItem::end() const
{
    double last = 60;
    for (qsizetype i = 0; i < count(); ++i) {
        const QList<DiveReading> readings = picture().readings(i);
        if (!readings.isEmpty())
            last = std::max(last, readings.back().time);
    }
    return last;
}

double DiveProfileItem::from() const
{
    return picture().from();
}

double DiveProfileItem::to() const
{
    return picture().to();
}

bool DiveProfileItem::isZoomed() const
{
    return from() > 0 || to() < end();
}

void DiveProfileItem::setFrom(double seconds)
{
    if (m_options.from == seconds)
        return;
    m_options.from = seconds;
    refresh();
    Q_EMIT rangeChanged();
}

void DiveProfileItem::setTo(double seconds)
{
    if (m_options.to == seconds)
        return;
    m_options.to = seconds;
    refresh();
    Q_EMIT rangeChanged();
}

void DiveProfileItem::setRange(double from, double to)
{
    if (to - from > 0)
        show(from, to - from);
}

void DiveProfileItem::resetZoom()
{
    show(0, end());
}

void DiveProfileItem::zoomBy(double factor, double around)
{
    if (!(factor > 0) || !std::isfinite(around))
        return;
    const double before = to() - from();
    const double span = std::clamp(before / factor, kShortest, end());
    show(around - (around - from()) * span / before, span);
}

/** As much as there is of it. */
void DiveProfileItem::show(double from, double span)
{
    const double whole = end();
    const double shown = std::clamp(span, kShortest, whole);
    const double first = std::clamp(from, 0.0, whole - shown);
    const bool isAll = shown >= whole;
    if (first == this->from() && first + shown == to())
        return;
    m_options.from = isAll ? 0 : first;
    m_options.to = isAll ? 0 : first + shown;
    m_picture.reset();
    placeCursor();
    update();
    Q_EMIT rangeChanged();
}

double DiveProfileItem::timeAt(double x) const
{
    return picture().timeAt(x / pixelScale());
}

QPointF DiveProfileItem::pointAt(double seconds, double metres) const
{
    return picture().pointAt(seconds, metres) * pixelScale();
}

// The cursor

double DiveProfileItem::cursorTime() const
{
    return m_cursor ? m_cursor->time : kNaN;
}

void DiveProfileItem::setCursorTime(double seconds)
{
    m_isHovered = false;
    moveCursor(picture().readingAt(seconds));
}

double DiveProfileItem::cursorDepth() const
{
    return m_cursor ? m_cursor->depth : kNaN;
}

double DiveProfileItem::cursorTemperature() const
{
    return m_cursor ? m_cursor->temperature.value_or(kNaN) : kNaN;
}

QString DiveProfileItem::cursorGas() const
{
    return m_cursor ? gasName(*m_cursor) : QString();
}

QList<double> DiveProfileItem::cursorDepths() const
{
    QList<double> depths;
    if (!m_cursor)
        return depths;
    for (qsizetype i = 0; i < count(); ++i) {
        const QList<DiveReading> readings = picture().readings(i);
        const std::optional<DiveReading> reading = picture().readingAt(m_cursor->time, i);
        depths.append(reading && m_cursor->time <= readings.back().time ? reading->depth : kNaN);
    }
    return depths;
}

QString DiveProfileItem::gasName(const DiveReading &reading) const
{
    if (reading.gasIndex < 0 || reading.gasIndex >= m_dive.gases.size())
        return {};
    return DiveProfile::gasName(m_dive.gases[reading.gasIndex]);
}

void DiveProfileItem::moveCursor(const std::optional<DiveReading> &reading)
{
    if (reading.has_value() == m_cursor.has_value()
        && (!reading || reading->time == m_cursor->time))
        return;
    m_cursor = reading;
    placeCursor();
    describe();
    Q_EMIT cursorChanged();
}

void DiveProfileItem::placeCursor()
{
    const bool isShown = m_cursor && m_cursor->time >= from() && m_cursor->time <= to();
    if (!isShown) {
        if (m_line) {
            m_line->setVisible(false);
            m_flag->setVisible(false);
        }
        return;
    }
    if (!m_line) {
        m_line = new ProfileCursor(this);
        m_flag = new ProfileFlag(this);
    }
    const bool isDark = theme() == Dark;
    const QColor text = isDark ? QColor(0xE8, 0xEE, 0xF4) : QColor(0x1B, 0x26, 0x31);
    const QColor paper = isDark ? QColor(0x1C, 0x28, 0x33) : QColor(0xFF, 0xFF, 0xFF);
    const QColor rim = isDark ? QColor(0x5A, 0x6B, 0x7B) : QColor(0x9A, 0xA8, 0xB5);
    const QRectF plot(picture().plot().topLeft() * pixelScale(),
                      picture().plot().size() * pixelScale());
    // Down to the temperatures, which it is about too.
    const QRectF all = picture().plot().united(picture().temperaturePlot());
    const QPointF at = pointAt(m_cursor->time, m_cursor->depth);
    QList<ProfileCursor::Dot> dots;
    QList<ProfileFlag::Row> rows{{durationText(m_cursor->time), {}}};
    const QList<double> depths = cursorDepths();
    for (qsizetype i = 0; i < depths.size(); ++i) {
        if (std::isnan(depths[i]))
            continue;
        const QColor colour = lineColor(int(i));
        dots.append({pointAt(m_cursor->time, depths[i]).y(), colour});
        rows.append({depthText(depths[i]), m_others.isEmpty() ? QColor() : colour});
    }
    if (m_others.isEmpty()) {
        if (m_cursor->temperature)
            rows.append({temperatureText(*m_cursor->temperature), {}});
        if (!cursorGas().isEmpty())
            rows.append({cursorGas(), {}});
    }
    QFont font = QGuiApplication::font();
    if (!fontFamily().isEmpty())
        font.setFamily(fontFamily());
    font.setPixelSize(int(std::lround(m_textSize)));
    m_line->show(at.x(), QRectF(all.topLeft() * pixelScale(), all.size() * pixelScale()), dots,
                 text, paper, pixelScale());
    m_flag->setColours(paper, text, rim);
    m_flag->show(at, plot, rows, font);
    m_line->setVisible(true);
    m_flag->setVisible(true);
}

/** To the next sample that is a pixel away, or far away, at least. */
void DiveProfileItem::stepCursor(int direction, bool isFar)
{
    const QList<DiveReading> readings = picture().readings();
    if (readings.isEmpty())
        return;
    if (!m_cursor) {
        setCursorTime(direction > 0 ? from() : to());
        return;
    }
    const double span = to() - from();
    const double distance = isFar ? span * kFarStep
                                  : span / (picture().plot().width() * pixelScale());
    const auto isBefore = [](const DiveReading &reading, double time) {
        return reading.time < time;
    };
    auto next = std::lower_bound(readings.begin(), readings.end(),
                                 m_cursor->time + direction * distance, isBefore);
    if (direction < 0 && next != readings.begin()
        && (next == readings.end() || next->time > m_cursor->time - distance))
        --next;
    if (next == readings.end())
        --next;
    goTo(next->time);
}

/** What is shown follows the cursor. */
void DiveProfileItem::goTo(double seconds)
{
    setCursorTime(seconds);
    const double time = m_cursor ? m_cursor->time : seconds;
    const double span = to() - from();
    if (time < from() || time > to())
        show(time - span / 2, span);
}

// Texts

QString DiveProfileItem::depthText(double metres) const
{
    constexpr double kMetresAFoot = 0.3048;
    const bool isMetric = units() == Metric;
    return QLocale().toString(isMetric ? metres : metres / kMetresAFoot, 'f', 1)
           + (isMetric ? u" m"_s : u" ft"_s);
}

QString DiveProfileItem::temperatureText(double celsius) const
{
    const bool isMetric = units() == Metric;
    return QLocale().toString(std::lround(isMetric ? celsius : celsius * 9 / 5 + 32))
           + (isMetric ? u" °C"_s : u" °F"_s);
}

QString DiveProfileItem::cursorText() const
{
    if (!m_cursor)
        return {};
    QStringList parts{depthText(m_cursor->depth)};
    if (m_cursor->temperature)
        parts.append(temperatureText(*m_cursor->temperature));
    if (!cursorGas().isEmpty())
        parts.append(cursorGas());
    return tr("At %1: %2.", "time, then depth and more")
        .arg(durationText(m_cursor->time), parts.join(u", "_s));
}

QString DiveProfileItem::summary() const
{
    const auto isShallower = [](const DiveReading &one, const DiveReading &other) {
        return one.depth < other.depth;
    };
    const QList<Dive> dives = QList<Dive>{m_dive} + m_others;
    QStringList sentences;
    for (qsizetype i = 0; i < dives.size(); ++i) {
        const QList<DiveReading> readings = picture().readings(i);
        QStringList parts;
        if (readings.isEmpty()) {
            parts.append(tr("no samples"));
        } else {
            const auto deepest = std::max_element(readings.begin(), readings.end(), isShallower);
            parts.append(tr("greatest depth %1").arg(depthText(deepest->depth)));
            parts.append(tr("duration %1").arg(minutesText(readings.back().time)));
        }
        if (m_others.isEmpty())
            parts += detailsOf(readings);
        sentences.append(tr("Dive %1: %2", "number, then depth and more")
                             .arg(QString::number(dives[i].diveNumber), parts.join(u", "_s)));
    }
    return sentences.join(u"; "_s) + u'.';
}

/** Temperatures and gases. */
QStringList DiveProfileItem::detailsOf(const QList<DiveReading> &readings) const
{
    std::optional<double> lowest;
    std::optional<double> highest;
    QStringList gases;
    for (const DiveReading &reading : readings) {
        if (reading.temperature) {
            lowest = std::min(lowest.value_or(*reading.temperature), *reading.temperature);
            highest = std::max(highest.value_or(*reading.temperature), *reading.temperature);
        }
        const QString gas = gasName(reading);
        if (!gas.isEmpty() && !gases.contains(gas))
            gases.append(gas);
    }
    QStringList parts;
    if (lowest && highest) {
        const QString low = temperatureText(*lowest);
        const QString high = temperatureText(*highest);
        parts.append(low == high ? tr("temperature %1").arg(low)
                                 : tr("temperature %1 to %2").arg(low, high));
    }
    if (!gases.isEmpty())
        parts.append(tr("gases %1").arg(gases.join(u", "_s)));
    return parts;
}

void DiveProfileItem::describe()
{
    if (!isComponentComplete() || m_isThumbnail)
        return;
    QObject *accessible = accessibleOf(this);
    if (!accessible)
        return;
    accessible->setProperty("role", QAccessible::Chart);
    accessible->setProperty("focusable", m_isInteractive);
    setText(accessible, "name", m_name,
            m_others.isEmpty() ? tr("Profile of dive %1").arg(m_dive.diveNumber)
                               : tr("Profiles of %1 dives").arg(count()));
    const QString cursor = cursorText();
    setText(accessible, "description", m_description,
            cursor.isEmpty() ? summary() : cursor + u' ' + summary());
}

// Mouse and touch

void DiveProfileItem::hoverEnterEvent(QHoverEvent *event)
{
    hoverMoveEvent(event);
}

void DiveProfileItem::hoverMoveEvent(QHoverEvent *event)
{
    setCursorTime(timeAt(event->position().x()));
    m_isHovered = true;
}

void DiveProfileItem::hoverLeaveEvent(QHoverEvent *)
{
    if (m_isHovered)
        moveCursor(std::nullopt);
}

void DiveProfileItem::press(QPointF place)
{
    forceActiveFocus(Qt::MouseFocusReason);
    m_drag = {.begin = place, .from = from(), .to = to()};
    setCursorTime(timeAt(place.x()));
}

void DiveProfileItem::moveTo(QPointF place)
{
    const QPointF way = place - m_drag.begin;
    if (!m_drag.isAcross && std::abs(way.x()) > std::abs(way.y())
        && std::abs(way.x()) >= QGuiApplication::styleHints()->startDragDistance()) {
        // From here on it is not a page that is scrolled.
        m_drag.isAcross = true;
        hold(true);
    }
    if (!isZoomed()) {
        setCursorTime(timeAt(place.x()));
    } else if (m_drag.isAcross) {
        const double span = m_drag.to - m_drag.from;
        show(m_drag.from - way.x() * span / (picture().plot().width() * pixelScale()), span);
    }
}

void DiveProfileItem::mousePressEvent(QMouseEvent *event)
{
    press(event->position());
    m_isHovered = event->source() == Qt::MouseEventNotSynthesized;
}

void DiveProfileItem::mouseMoveEvent(QMouseEvent *event)
{
    moveTo(event->position());
    m_isHovered = true;
}

void DiveProfileItem::mouseReleaseEvent(QMouseEvent *)
{
    hold(false);
}

void DiveProfileItem::mouseDoubleClickEvent(QMouseEvent *)
{
    resetZoom();
}

void DiveProfileItem::mouseUngrabEvent()
{
    hold(false);
}

void DiveProfileItem::touchEvent(QTouchEvent *event)
{
    QList<QPointF> fingers;
    for (const QEventPoint &point : event->points()) {
        if (point.state() != QEventPoint::Released)
            fingers.append(point.position());
    }
    if (fingers.size() >= 2) {
        hold(true);
        pinch(fingers[0], fingers[1]);
    } else if (event->type() == QEvent::TouchBegin && fingers.size() == 1) {
        tap(fingers[0]);
    } else if (fingers.size() == 1 && !m_pinch) {
        moveTo(fingers[0]);
    } else if (fingers.isEmpty()) {
        touchUngrabEvent();
    }
    event->accept();
}

/** Whether a page around it has to wait. It asks for both, whatever the event is. */
void DiveProfileItem::hold(bool isHeld)
{
    setKeepMouseGrab(isHeld);
    setKeepTouchGrab(isHeld);
}

/** The second one within a moment shows all. */
void DiveProfileItem::tap(QPointF place)
{
    const QStyleHints *hints = QGuiApplication::styleHints();
    const bool isSecond = m_sinceTap.isValid()
                          && m_sinceTap.elapsed() < hints->mouseDoubleClickInterval()
                          && (place - m_tap).manhattanLength() < hints->touchDoubleTapDistance();
    m_tap = place;
    press(place);
    if (isSecond) {
        m_sinceTap.invalidate();
        resetZoom();
    } else {
        m_sinceTap.start();
    }
}

/** What was between the fingers stays there. */
void DiveProfileItem::pinch(QPointF one, QPointF other)
{
    constexpr double kLeastDistance = 20;
    const QPointF way = other - one;
    const double distance = std::max(std::hypot(way.x(), way.y()), kLeastDistance);
    const double x = (one.x() + other.x()) / 2;
    if (!m_pinch)
        m_pinch = {.distance = distance, .time = timeAt(x), .span = to() - from()};
    const double span = std::clamp(m_pinch->span * m_pinch->distance / distance, kShortest, end());
    const double place = (timeAt(x) - from()) / (to() - from());
    show(m_pinch->time - place * span, span);
}

void DiveProfileItem::touchUngrabEvent()
{
    m_pinch.reset();
    hold(false);
}

void DiveProfileItem::wheelEvent(QWheelEvent *event)
{
    constexpr double kStep = 120;
    const QPointF steps = QPointF(event->angleDelta()) / kStep;
    const double before = from();
    const double span = to() - before;
    // A page that is scrolled does not stop at a profile in it.
    const bool isMeant = event->modifiers() & Qt::ControlModifier || hasActiveFocus();
    if (isMeant && steps.y() != 0)
        zoomBy(std::pow(kZoomOfWheel, steps.y()), timeAt(event->position().x()));
    else if (steps.x() != 0 && isZoomed())
        show(before - steps.x() * span * kFarStep, span);
    event->setAccepted(from() != before || to() - from() != span);
}

// Keys

void DiveProfileItem::keyPressEvent(QKeyEvent *event)
{
    const bool isFar = event->modifiers() & Qt::ControlModifier;
    const bool isOther = event->modifiers() & (Qt::AltModifier | Qt::MetaModifier);
    event->setAccepted(m_isInteractive && !m_isThumbnail && !isOther
                       && handleKey(event->key(), isFar));
}

bool DiveProfileItem::handleKey(int key, bool isFar)
{
    const bool isInside = m_cursor && m_cursor->time >= from() && m_cursor->time <= to();
    const double around = isInside ? m_cursor->time : (from() + to()) / 2;
    switch (key) {
    case Qt::Key_Left:
        stepCursor(-1, isFar);
        return true;
    case Qt::Key_Right:
        stepCursor(1, isFar);
        return true;
    case Qt::Key_Home:
        goTo(0);
        return true;
    case Qt::Key_End:
        goTo(end());
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomBy(kZoomOfKey, around);
        return true;
    case Qt::Key_Minus:
        zoomBy(1 / kZoomOfKey, around);
        return true;
    case Qt::Key_0:
        resetZoom();
        return true;
    case Qt::Key_Escape:
        if (!m_cursor)
            return false;
        moveCursor(std::nullopt);
        return true;
    default:
        return false;
    }
}

void DiveProfileItem::focusInEvent(QFocusEvent *event)
{
    QQuickPaintedItem::focusInEvent(event);
    // With the mouse one sees where it is.
    if (event->reason() == Qt::MouseFocusReason)
        return;
    if (!m_focus)
        m_focus = new ProfileFocus(this);
    m_focus->setSize(size());
    m_focus->show(lineColor());
}

void DiveProfileItem::focusOutEvent(QFocusEvent *event)
{
    QQuickPaintedItem::focusOutEvent(event);
    if (m_focus)
        m_focus->setVisible(false);
}
