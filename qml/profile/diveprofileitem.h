// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>
#include <QtCore/qvariant.h>
#include <QtGui/qcolor.h>
#include <QtQml/qqml.h>
#include <QtQuick/qquickpainteditem.h>

#include <limits>
#include <memory>
#include <optional>

#include <varda/dive.h>
#include <varda/divepicture.h>
#include <varda/divereading.h>

class ProfileCursor;
class ProfileFlag;
class ProfileFocus;

/**
 * The profile of a dive, as DivePicture draws it, with a cursor and a zoom.
 *
 * Mouse and touch: the cursor follows the pointer; a drag moves the part that is shown, if that is
 * not all. Ctrl and the wheel zoom around the pointer, as does the wheel alone in a profile that has
 * the focus, and two fingers. A double click shows all again.
 *
 * Keys: left and right move the cursor by a sample or a pixel, with Ctrl by a tenth of what is shown;
 * Home and End to the ends of the dive; + and - zoom around it, 0 shows all; Escape hides it.
 */
class DiveProfileItem : public QQuickPaintedItem
{
    Q_OBJECT
    QML_NAMED_ELEMENT(DiveProfile)
    Q_PROPERTY(Dive dive READ dive WRITE setDive RESET resetDive NOTIFY diveChanged)
    /** Dives that are drawn over it; then there are only the depths. */
    Q_PROPERTY(QVariantList others READ others WRITE setOthers NOTIFY othersChanged)
    /** Of the dives of a comparison; see PictureOptions. */
    Q_PROPERTY(QStringList names READ names WRITE setNames NOTIFY namesChanged)
    Q_PROPERTY(Units units READ units WRITE setUnits NOTIFY unitsChanged)
    Q_PROPERTY(Theme theme READ theme WRITE setTheme NOTIFY themeChanged)
    /** Empty: the application's. */
    Q_PROPERTY(QString fontFamily READ fontFamily WRITE setFontFamily NOTIFY fontFamilyChanged)
    /** Of the labels, 4 to 100 pixels. All that is drawn grows with it. */
    Q_PROPERTY(double textSize READ textSize WRITE setTextSize NOTIFY textSizeChanged)
    /** That of the theme, unless it is set. A thumbnail has none. */
    Q_PROPERTY(QColor background READ background WRITE setBackground RESET resetBackground NOTIFY
                   backgroundChanged)
    /** Only the line of the depth, for lists; neither interactive nor accessible. */
    Q_PROPERTY(bool thumbnail READ isThumbnail WRITE setThumbnail NOTIFY thumbnailChanged)
    Q_PROPERTY(bool interactive READ isInteractive WRITE setInteractive NOTIFY interactiveChanged)

    /** The seconds that are shown, ten at least. */
    Q_PROPERTY(double from READ from WRITE setFrom NOTIFY rangeChanged)
    Q_PROPERTY(double to READ to WRITE setTo NOTIFY rangeChanged)
    /** Whether that is not all of the dive. */
    Q_PROPERTY(bool zoomed READ isZoomed NOTIFY rangeChanged)

    /** Of the sample that the cursor is at; set to another time it goes to the nearest. NaN: no cursor. */
    Q_PROPERTY(double cursorTime READ cursorTime WRITE setCursorTime NOTIFY cursorChanged)
    /** Metres; NaN without a cursor. */
    Q_PROPERTY(double cursorDepth READ cursorDepth NOTIFY cursorChanged)
    /** Degrees Celsius; NaN without a cursor or a temperature. */
    Q_PROPERTY(double cursorTemperature READ cursorTemperature NOTIFY cursorChanged)
    /** "EAN32"; empty without a cursor or a gas. */
    Q_PROPERTY(QString cursorGas READ cursorGas NOTIFY cursorChanged)
    /** Of the dive and each of the others; NaN for those that have ended. Empty without a cursor. */
    Q_PROPERTY(QList<double> cursorDepths READ cursorDepths NOTIFY cursorChanged)

    /** What the profile says, in a sentence. It is the accessible description as well. */
    Q_PROPERTY(QString summary READ summary NOTIFY summaryChanged)

public:
    enum Units { Metric, Imperial };
    Q_ENUM(Units)
    enum Theme { Light, Dark };
    Q_ENUM(Theme)

    explicit DiveProfileItem(QQuickItem *parent = nullptr);
    ~DiveProfileItem() override;

    Dive dive() const { return m_dive; }
    void setDive(const Dive &dive);
    void resetDive() { setDive({}); }
    QVariantList others() const;
    void setOthers(const QVariantList &others);
    QStringList names() const { return m_options.names; }
    void setNames(const QStringList &names);
    Units units() const { return Units(int(m_options.units)); }
    void setUnits(Units units);
    Theme theme() const { return Theme(int(m_options.theme)); }
    void setTheme(Theme theme);
    QString fontFamily() const { return m_options.fontFamily; }
    void setFontFamily(const QString &family);
    double textSize() const { return m_textSize; }
    void setTextSize(double pixels);
    QColor background() const { return m_options.background; }
    void setBackground(const QColor &colour);
    void resetBackground() { setBackground({}); }
    bool isThumbnail() const { return m_isThumbnail; }
    void setThumbnail(bool isThumbnail);
    bool isInteractive() const { return m_isInteractive; }
    void setInteractive(bool isInteractive);

    double from() const;
    void setFrom(double seconds);
    double to() const;
    void setTo(double seconds);
    bool isZoomed() const;
    /** Shows the time between these seconds, as far as the dive has it. */
    Q_INVOKABLE void setRange(double from, double to);
    Q_INVOKABLE void resetZoom();
    /** Zooms in by a factor above 1 and out by one below it; this second stays where it is. */
    Q_INVOKABLE void zoomBy(double factor, double around);

    double cursorTime() const;
    void setCursorTime(double seconds);
    double cursorDepth() const;
    double cursorTemperature() const;
    QString cursorGas() const;
    QList<double> cursorDepths() const;
    QString summary() const;

    /** The seconds at a place in the item. */
    Q_INVOKABLE double timeAt(double x) const;
    /** Where this depth at this time is drawn, or would be. */
    Q_INVOKABLE QPointF pointAt(double seconds, double metres) const;
    /** How the dive is drawn, and each of the others from 1 on. */
    Q_INVOKABLE QColor lineColor(int dive = 0) const;

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void diveChanged();
    void othersChanged();
    void namesChanged();
    void unitsChanged();
    void themeChanged();
    void fontFamilyChanged();
    void textSizeChanged();
    void backgroundChanged();
    void thumbnailChanged();
    void interactiveChanged();
    void rangeChanged();
    void cursorChanged();
    void summaryChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &now, const QRectF &before) override;
    void hoverEnterEvent(QHoverEvent *event) override;
    void hoverMoveEvent(QHoverEvent *event) override;
    void hoverLeaveEvent(QHoverEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void touchEvent(QTouchEvent *event) override;
    void touchUngrabEvent() override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    /** One finger, or the mouse with a button down. */
    struct Drag {
        QPointF begin;
        double from = 0; ///< what is shown then
        double to = 0;
        bool isAcross = false;
    };
    /** Two fingers. */
    struct Pinch {
        double distance = 0;
        double time = 0; ///< between them
        double span = 0; ///< what is shown then
    };

    [[nodiscard]] const DivePicture &picture() const;
    /** Its pixels as pixels of the item. */
    [[nodiscard]] double pixelScale() const;
    [[nodiscard]] double end() const;
    [[nodiscard]] qsizetype count() const { return 1 + m_others.size(); }
    [[nodiscard]] QString gasName(const DiveReading &reading) const;
    [[nodiscard]] QString depthText(double metres) const;
    [[nodiscard]] QString temperatureText(double celsius) const;
    [[nodiscard]] QString cursorText() const;
    [[nodiscard]] QStringList detailsOf(const QList<DiveReading> &readings) const;
    void refresh();
    void refreshContent();
    void applyInteraction();
    void show(double from, double span);
    void moveCursor(const std::optional<DiveReading> &reading);
    void placeCursor();
    void stepCursor(int direction, bool isFar);
    void goTo(double seconds);
    void press(QPointF place);
    void moveTo(QPointF place);
    void hold(bool isHeld);
    void tap(QPointF place);
    void pinch(QPointF one, QPointF other);
    bool handleKey(int key, bool isFar);
    void describe();

    Dive m_dive;
    QList<Dive> m_others;
    PictureOptions m_options; ///< without a size
    double m_textSize = 12;
    bool m_isThumbnail = false;
    bool m_isInteractive = true;
    mutable std::optional<DivePicture> m_picture;
    std::optional<DiveReading> m_cursor;
    bool m_isHovered = false; ///< the cursor follows the mouse
    Drag m_drag;
    std::optional<Pinch> m_pinch;
    QPointF m_tap; ///< of one finger, the last one
    QElapsedTimer m_sinceTap;
    ProfileCursor *m_line = nullptr; ///< the children, once there is a need
    ProfileFlag *m_flag = nullptr;
    ProfileFocus *m_focus = nullptr;
    QString m_name;        ///< as given to Accessible
    QString m_description; ///< the same
};
