#include "panel/PointHeader.h"

#include "images/AEPoint.h"
#include "spectra/AFileSelect.h"

#include <QAbstractButton>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>

PointHeader::PointHeader(const AEPoint *row, QWidget *parent)
    : QWidget(parent), m_row(row), m_absorption(new QLabel(this))
{
    for (const char *name : {"NumDisp", "UseCB", "VPointCB", "LCFCB", "Energy", "Mut1", "Mut2",
                             "Mut3", "Mut4", "MutT", "FileSelect", "ShowMapB", "FPB"}) {
        auto *column = row->findChild<QWidget *>(QLatin1String(name));
        column->installEventFilter(this);
        m_columns.append(column);
        auto *label = new QLabel(this);
        const bool isBox = qobject_cast<QAbstractButton *>(column) != nullptr;
        label->setAlignment((isBox ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignBottom);
        m_labels.append(label);
    }
    m_absorption->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void PointHeader::setCaptions(const QStringList &captions, const QString &absorption)
{
    for (int i = 0; i < m_labels.size(); ++i) {
        m_labels[i]->setText(captions.value(i));
    }
    m_absorption->setText(absorption);
    updateGeometry();
    place();
}

QSize PointHeader::sizeHint() const
{
    int height = 2 * m_absorption->sizeHint().height(); // its caption stands over others
    for (const QLabel *label : m_labels) {
        height = qMax(height, label->sizeHint().height());
    }
    return QSize(0, height);
}

bool PointHeader::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        place();
    }
    return QWidget::eventFilter(object, event);
}

void PointHeader::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    place();
}

QRect PointHeader::columnOf(const QWidget *widget) const
{
    const QPoint left = widget->mapTo(m_row, QPoint(0, 0));
    return QRect(left.x(), 0, widget->width(), height());
}

void PointHeader::place()
{
    for (int i = 0; i < m_labels.size(); ++i) {
        QRect box = columnOf(m_columns[i]);
        // A caption may be wider than a box below it, as far as its neighbours leave room.
        const int wanted = m_labels[i]->sizeHint().width();
        const bool isLeft = (m_labels[i]->alignment() & Qt::AlignLeft) != 0;
        const int more = qMax(0, wanted - box.width());
        box.adjust(isLeft ? 0 : -(more + 1) / 2, 0, isLeft ? more : (more + 1) / 2, 0);
        box.moveRight(qMin(box.right(), width() - 1));
        box.moveLeft(qMax(box.left(), 0));
        m_labels[i]->setGeometry(box);
    }
    constexpr int kFirst = 5;
    constexpr int kLast = 9;
    QRect across = columnOf(m_columns[kFirst]).united(columnOf(m_columns[kLast]));
    across.setHeight(m_absorption->sizeHint().height());
    m_absorption->setGeometry(across);
}
