#pragma once

#include "analysis/PixelReport.h"

#include <QImage>
#include <QWidget>

#include <functional>

class QLabel;
class QScrollArea;

namespace orvel {

/// A window beside the panel that shows the report on one pixel: its fit as a drawing, its numbers
/// as a table, and buttons that save both. Showing it never takes the focus, so that the map can be
/// clicked on and on; its buttons work like any.
class PixelWindow : public QWidget {
    Q_OBJECT

public:
    /// Asks for the file to write; empty: none.
    /// suffix  of the kind of file, "png" or "csv"
    using AskPath =
        std::function<QString(QWidget *parent, const QString &suggested, const QString &suffix)>;

    /// askPath  null: a file dialog
    explicit PixelWindow(QWidget *parent = nullptr, AskPath askPath = nullptr);

    /// Shows a report in place of the one before, where the window is; opens it if it is closed. A
    /// report of no method changes nothing.
    void show(const PixelReport &report);

    const PixelReport &report() const;

    /// Drawing and table as one picture, twice as fine as a plain screen.
    QImage picture() const;
    /// False when the file could not be written; an older one is then as it was.
    [[nodiscard]] bool savePng(const QString &path) const;
    [[nodiscard]] bool saveCsv(const QString &path) const;

protected:
    void keyPressEvent(QKeyEvent *event) override; ///< Escape closes

private:
    using QWidget::show; // there is nothing to see without a report

    class Plot;

    void save(const QString &suffix);

    AskPath m_askPath;
    Plot *m_plot;
    QScrollArea *m_scroll; ///< around the numbers
    QLabel *m_numbers;
    QLabel *m_outcome; ///< of the last saving
};

/// A value and its standard deviation as a reader wants them: two significant digits of the
/// deviation, the value as far as that. Without a deviation four digits of the value alone.
struct ShownNumber {
    QString value;
    QString sigma; ///< empty: not determined
};
ShownNumber shownNumber(double value, double sigma);

} // namespace orvel
