#include "panel/TabOrder.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QSplitter>

#include <algorithm>

namespace orvel {
namespace {

void visit(QWidget *widget, QList<QWidget *> &order);

void visit(QLayout *layout, QList<QWidget *> &order)
{
    QList<QLayoutItem *> items;
    for (int i = 0; i < layout->count(); ++i) {
        items.append(layout->itemAt(i));
    }
    if (const auto *grid = qobject_cast<QGridLayout *>(layout)) { // row by row
        const auto place = [grid](QLayoutItem *item) {
            int row = 0;
            int column = 0;
            int rows = 0;
            int columns = 0;
            grid->getItemPosition(grid->indexOf(item->widget()), &row, &column, &rows, &columns);
            return std::make_pair(row, column);
        };
        const bool onlyWidgets = std::all_of(items.begin(), items.end(), [](QLayoutItem *item) {
            return item->widget() != nullptr;
        });
        if (onlyWidgets) {
            std::stable_sort(items.begin(), items.end(),
                             [&](QLayoutItem *a, QLayoutItem *b) { return place(a) < place(b); });
        }
    }
    for (QLayoutItem *item : items) {
        if (item->widget()) {
            visit(item->widget(), order);
        } else if (item->layout()) {
            visit(item->layout(), order);
        }
    }
}

void visit(QWidget *widget, QList<QWidget *> &order)
{
    if (auto *splitter = qobject_cast<QSplitter *>(widget)) {
        for (int i = 0; i < splitter->count(); ++i) {
            if (i > 0 && (splitter->handle(i)->focusPolicy() & Qt::TabFocus) != 0) {
                order.append(splitter->handle(i));
            }
            visit(splitter->widget(i), order);
        }
    } else if (auto *scroll = qobject_cast<QScrollArea *>(widget)) {
        visit(scroll->widget(), order);
    } else {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0) {
            order.append(widget);
        }
        if (widget->layout()) {
            visit(widget->layout(), order);
        }
    }
}

} // namespace

void orderTabsByLayout(QWidget *form)
{
    QList<QWidget *> order;
    visit(form, order);
    for (int i = 1; i < order.size(); ++i) {
        QWidget::setTabOrder(order[i - 1], order[i]);
    }
}

} // namespace orvel
