#include "app/Body.h"

#include "panel/FourPs.h"
#include "ui_Body.h"

#include <QEvent>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>

namespace {

/// Around the panel; scrolls only where letters are so large that a usual screen has no room for
/// it.
class Frame : public QScrollArea {
public:
    explicit Frame(FourPs *panel) : m_panel(panel)
    {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
        setWidget(panel);
        m_soon.setSingleShot(true);
        connect(&m_soon, &QTimer::timeout, this, [this] {
            QWidget *at = m_panel->focusWidget();
            if (at && at->isVisible()) {
                ensureWidgetVisible(at);
            }
        });
    }

    QSize sizeHint() const override
    {
        return m_panel->sizeHint().expandedTo(m_panel->minimumSizeHint());
    }
    /// That of the panel, or what is left of the screen, taken as one of 1280 x 720 at least. A
    /// window opens in its least size where the screen is small: less would scroll without need.
    QSize minimumSizeHint() const override
    {
        constexpr QSize kLeftOf720(1206, 664);
        constexpr QSize kBorders(16, 48);
        const QSize left = screen()->availableSize() - kBorders;
        return m_panel->minimumSizeHint().boundedTo(left.expandedTo(kLeftOf720));
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (object == m_panel && event->type() == QEvent::LayoutRequest) {
            updateGeometry(); // its least size may be another
        }
        return QScrollArea::eventFilter(object, event);
    }
    /// Once the inputs inside have scrolled to the field.
    bool focusNextPrevChild(bool next) override
    {
        const bool isDone = QScrollArea::focusNextPrevChild(next);
        m_soon.start(0);
        return isDone;
    }

private:
    FourPs *m_panel;
    QTimer m_soon;
};

} // namespace

Body::Body(QWidget *parent) : QMainWindow(parent), m_ui(std::make_unique<Ui::Body>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("orvel"));
    m_panel = new FourPs;
    m_ui->bodyLayout->addWidget(new Frame(m_panel));
    m_ui->statusbar->hide(); // nothing is ever written to it
}

Body::~Body() = default;
