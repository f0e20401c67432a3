#include "display/LightFields.h"

#include <QAbstractScrollArea>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QToolTip>

namespace {

const QColor kInk(0, 0, 0);
const QColor kButtons(239, 239, 239);
const QColor kPaleInk(90, 90, 90); ///< of placeholders: 5.9 : 1 on the darkest of the grounds
const QColor kSelected(0, 60, 130);

/// Keeps what a field opens from taking its style sheet.
class LightField : public QObject {
public:
    explicit LightField(QWidget *field) : QObject(field), m_field(field)
    {
        setObjectName(kName);
        field->installEventFilter(this);
        if (auto *area = qobject_cast<QAbstractScrollArea *>(field)) {
            area->viewport()->installEventFilter(this);
        }
    }
    static bool isOn(const QWidget &field)
    {
        return field.findChild<QObject *>(kName, Qt::FindDirectChildrenOnly) != nullptr;
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::ToolTip && !m_field->toolTip().isEmpty()) {
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), m_field->toolTip(),
                               m_field->parentWidget());
            return true;
        }
        if (event->type() == QEvent::ContextMenu) {
            return openMenu(*static_cast<QContextMenuEvent *>(event));
        }
        return QObject::eventFilter(object, event);
    }

private:
    bool openMenu(const QContextMenuEvent &event)
    {
        QMenu *menu = nullptr;
        if (auto *line = qobject_cast<QLineEdit *>(m_field)) {
            menu = line->createStandardContextMenu();
        } else if (auto *text = qobject_cast<QPlainTextEdit *>(m_field)) {
            menu = text->createStandardContextMenu();
        }
        if (menu == nullptr) {
            return false;
        }
        menu->setParent(m_field->window(), menu->windowFlags());
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(event.globalPos());
        return true;
    }

    static const QString kName;
    QWidget *m_field;
};
const QString LightField::kName = QStringLiteral("LightField");

QPalette lightPalette()
{
    QPalette palette(kButtons); // a whole one: scroll bars use its other colours
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
            palette.setColor(group, role, kInk);
        }
        palette.setColor(group, QPalette::PlaceholderText, kPaleInk);
        palette.setColor(group, QPalette::Highlight, kSelected);
        palette.setColor(group, QPalette::HighlightedText, Qt::white);
    }
    return palette;
}

void ink(QWidget &field)
{
    static const QPalette palette = lightPalette();
    field.setPalette(palette);
    for (QScrollBar *bar : field.findChildren<QScrollBar *>()) {
        bar->setPalette(palette); // the style sheet keeps it from inheriting it
    }
    new LightField(&field);
}

} // namespace

void orvel::inkLightFields(QWidget &form)
{
    QList<QWidget *> widgets = form.findChildren<QWidget *>();
    widgets.append(&form);
    for (QWidget *widget : widgets) {
        if (widget->styleSheet().contains(QLatin1String("background-color")) &&
            !LightField::isOn(*widget)) {
            ink(*widget);
        }
    }
}
