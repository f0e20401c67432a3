#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QRectF>
#include <QStringList>
#include <QVector>

class MouseC;
class QPainter;

/// Text fitted into rectangles, check boxes, columns of labels, and the rectangles that labels
/// have taken already.
///
/// Rectangles may have negative extents. Flags are Qt's alignment flags. A fit mode of 1 makes a
/// text fill its rectangle. Sizes that are no positive finite number draw nothing.
class DrawText : public QObject {
    Q_OBJECT

public:
    static constexpr int kLeft = Qt::AlignLeft | Qt::AlignVCenter;
    static constexpr int kRight = Qt::AlignRight | Qt::AlignVCenter;
    static constexpr int kCentre = Qt::AlignHCenter | Qt::AlignVCenter;
    enum FitMode { KeepSize = 0, Fit = 1 };
    static constexpr double kNoMaximum = -1.0;

    explicit DrawText(QObject *parent = nullptr) : QObject(parent) {}

    /// Draws a text; fitted, it fills the rectangle up to maxPointSize (0 and less: no maximum).
    /// Returns the text's bounding rectangle at 10 points.
    static QRectF drawFittedText(QPainter *painter, const QRectF &rect, const QFont &font,
                                 int flags, int fitMode, const QString &text, double maxPointSize);
    /// The bounding rectangle of a text at the fitted, whole point size. The font has its old size
    /// again afterwards.
    static QRectF fitFont(QPainter *painter, const QRectF &rect, QFont &font, int flags,
                          int fitMode, const QString &text);
    /// Point size at which a text of the application's font fills the rectangle.
    static double fitPointSize(QPainter *painter, const QRectF &rect, const QFont &font, int flags,
                               const QString &text);

    /// A square of size h on `bottom` from x on, and its label as far as `right`.
    void drawCheckBox(QPainter *painter, bool on, const QString &label, double x, double right,
                      double bottom, double h) const;
    /// Whether the pointer is inside that square.
    static bool inCheckBox(const MouseC &mouse, double x, double bottom, double h);

    /// Texts below each other at (dx, dy). With KeepSize all get the size at which the largest of
    /// them fits, which stays set in `font`; for an empty list that is 90000 points.
    static void drawTextColumn(QPainter *painter, const QRectF &rect, double dx, double dy,
                               QFont &font, int flags, int fitMode, const QStringList &texts,
                               double maxPointSize);
    /// Keys to the left, values to the right, in one size that fits both together.
    /// values  at least as many as keys
    static void drawKeyValueColumn(QPainter *painter, const QRectF &rect, double dx, double dy,
                                   QFont &font, const QStringList &keys, const QStringList &values,
                                   double maxPointSize);

    bool overlapsDrawn(const QRectF &rect) const;
    void rememberRect(const QRectF &rect) { m_drawn.append(rect); }
    static QRectF normalizeRect(const QRectF &rect) { return rect.normalized(); }

private:
    int m_number = -1;
    QVector<QRectF> m_drawn;
    QColor m_boxOutline = QColor(0, 220, 220);
    QColor m_boxOn = QColor(170, 255, 170);
    QColor m_boxOff = QColor(140, 180, 140);
    QColor m_labelText = QColor(0, 0, 0);
};
