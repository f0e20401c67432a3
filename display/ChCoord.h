#pragma once

#include <QObject>

/// The linear map between real (data) and screen coordinates of one drawing surface.
///
/// Screen coordinates are logical widget pixels, x to the right, y downwards. The area is the
/// whole surface, the frame the rectangle that is plotted into. A surface sets area y0 to its
/// height and y1 to 0, so that real minima lie at the bottom.
///
/// Nothing is guarded: a range or frame without extent gives infinities and not-a-numbers, which
/// painters must expect.
class ChCoord : public QObject {
    Q_OBJECT

public:
    explicit ChCoord(QObject *parent = nullptr) : QObject(parent) {}

    /// Sets the area, and the frame to the same rectangle.
    void setArea(double x0, double y0, double x1, double y1);
    void setFrame(double x0, double y0, double x1, double y1);
    /// The frame from area and margins; its edges are whole pixels from those of the area.
    void setFrameByMargins();
    /// Fractions of the area's width (left, right) and height (top, bottom).
    void setMargins(double left, double right, double top, double bottom);
    void setTopMargin(double top) { m_topMargin = top; }
    void setRange(double xMin, double yMin, double xMax, double yMax);
    void setXRange(double min, double max);
    void setYRange(double min, double max);

    double areaX0() const { return m_areaX0; }
    double areaX1() const { return m_areaX1; }
    double areaY0() const { return m_areaY0; }
    double areaY1() const { return m_areaY1; }
    double frameX0() const { return m_frameX0; }
    double frameX1() const { return m_frameX1; }
    double frameY0() const { return m_frameY0; }
    double frameY1() const { return m_frameY1; }
    double xMin() const { return m_xMin; }
    double xMax() const { return m_xMax; }
    double yMin() const { return m_yMin; }
    double yMax() const { return m_yMax; }
    double leftMargin() const { return m_leftMargin; }

    /// Real to screen; sdx and sdy take distances.
    double sx(double x) const { return xScale() * (x - m_xMin) + m_frameX0; }
    double sy(double y) const { return yScale() * (y - m_yMin) + m_frameY0; }
    double sdx(double d) const { return xScale() * d; }
    double sdy(double d) const { return yScale() * d; }

    /// Screen to real. The Offset forms leave the range's minimum out, rdx and rdy take distances,
    /// the InRange forms clamp to the range, whichever way round it is.
    double rx(double s) const { return rxOffset(s) + m_xMin; }
    double ry(double s) const { return ryOffset(s) + m_yMin; }
    double rxOffset(double s) const { return rdx(s - m_frameX0); }
    double ryOffset(double s) const { return rdy(s - m_frameY0); }
    double rdx(double d) const { return (m_xMax - m_xMin) / (m_frameX1 - m_frameX0) * d; }
    double rdy(double d) const { return (m_yMax - m_yMin) / (m_frameY1 - m_frameY0) * d; }
    double rxInRange(double s) const;
    double ryInRange(double s) const;

    /// Whether a screen position lies in the band along an edge, or outside.
    bool nearFrameXEdge(double s) const;
    bool nearFrameYEdge(double s) const;
    bool nearAreaXEdge(double s) const;
    bool nearAreaYEdge(double s) const;

    /// The first of base * 1, 2, 5, 10, 20 ... that is more than minPixels wide on the screen;
    /// base * 1e8 when none of eight decades is, as on a reversed range. yTickStep measures on the
    /// x scale as well: both axes of a plot get the same steps.
    double xTickStep(double base, int minPixels) const;
    double yTickStep(double base, int minPixels) const { return xTickStep(base, minPixels); }

    /// The frame's height is divided into this many rows for the axis labels, ...
    int labelRows() const { return m_labelRows; }
    void setLabelRows(int rows) { m_labelRows = rows; }
    int labelColumns() const { return m_labelColumns; } ///< of its width; not used by labels
    /// ... of which a label fills this fraction.
    double labelFill() const { return m_labelFill; }

    /// False once a plot found nothing to draw.
    bool hasContent() const { return m_hasContent; }
    void setHasContent(bool f) { m_hasContent = f; }

private:
    double xScale() const { return (m_frameX1 - m_frameX0) / (m_xMax - m_xMin); }
    double yScale() const { return (m_frameY1 - m_frameY0) / (m_yMax - m_yMin); }

    double m_areaX0 = 0.0;
    double m_areaX1 = 1.0;
    double m_areaY0 = 0.0;
    double m_areaY1 = 1.0;
    double m_frameX0 = 0.0;
    double m_frameX1 = 1.0;
    double m_frameY0 = 0.0;
    double m_frameY1 = 1.0;
    double m_xMin = 0.0;
    double m_xMax = 1.0;
    double m_yMin = 0.0;
    double m_yMax = 1.0;
    double m_areaEdge = 0.1;
    double m_frameEdge = 0.1;
    double m_leftMargin = 0.1;
    double m_rightMargin = 0.05;
    double m_topMargin = 0.05;
    double m_bottomMargin = 0.1;
    int m_labelRows = 20;
    int m_labelColumns = 25;
    double m_labelFill = 0.85;
    bool m_hasContent = true;
};
