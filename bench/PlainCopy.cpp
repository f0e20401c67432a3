#include "bench/PlainCopy.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>

#include <stdexcept>

namespace orvel::bench {
namespace {

template <class Widget> QWidget *makeBare(const QWidget & /*source*/, QWidget *parent)
{
    return new Widget(parent);
}

template <class Widget> QWidget *makeWithText(const QWidget &source, QWidget *parent)
{
    auto *copy = new Widget(parent);
    copy->setText(static_cast<const Widget &>(source).text());
    return copy;
}

QWidget *makeFrame(const QWidget &source, QWidget *parent)
{
    auto *copy = new QFrame(parent);
    copy->setFrameStyle(static_cast<const QFrame &>(source).frameStyle());
    return copy;
}

QWidget *makeGroupBox(const QWidget &source, QWidget *parent)
{
    return new QGroupBox(static_cast<const QGroupBox &>(source).title(), parent);
}

QWidget *makeSplitter(const QWidget &source, QWidget *parent)
{
    return new QSplitter(static_cast<const QSplitter &>(source).orientation(), parent);
}

struct Kind {
    const char *name;
    QWidget *(*make)(const QWidget &source, QWidget *parent);
};

/// By the class itself or the nearest one above it that the toolkit has.
const Kind &kindOf(const QWidget &widget)
{
    static const Kind kinds[] = {
        {"QCheckBox", makeWithText<QCheckBox>},
        {"QFrame", makeFrame},
        {"QGroupBox", makeGroupBox},
        {"QLabel", makeWithText<QLabel>},
        {"QLineEdit", makeWithText<QLineEdit>},
        {"QListWidget", makeBare<QListWidget>},
        {"QMenuBar", makeBare<QMenuBar>},
        {"QPlainTextEdit", makeBare<QPlainTextEdit>},
        {"QPushButton", makeWithText<QPushButton>},
        {"QRadioButton", makeWithText<QRadioButton>},
        {"QScrollArea", makeBare<QScrollArea>},
        {"QSplitter", makeSplitter},
        {"QStatusBar", makeBare<QStatusBar>},
        {"QWidget", makeBare<QWidget>},
    };
    for (const QMetaObject *type = widget.metaObject(); type != nullptr;
         type = type->superClass()) {
        for (const Kind &kind : kinds) {
            if (qstrcmp(type->className(), kind.name) == 0) {
                return kind;
            }
        }
    }
    throw std::runtime_error("a widget of no kind");
}

/// The parts that were put into a widget, in their order.
QList<QWidget *> partsOf(const QWidget &widget)
{
    QList<QWidget *> parts;
    if (const auto *splitter = qobject_cast<const QSplitter *>(&widget)) {
        for (int i = 0; i < splitter->count(); ++i) {
            parts.append(splitter->widget(i));
        }
    } else if (const auto *scroll = qobject_cast<const QScrollArea *>(&widget)) {
        parts.append(scroll->widget());
    } else if (const auto *window = qobject_cast<const QMainWindow *>(&widget)) {
        parts = {window->centralWidget(), window->menuWidget()};
        parts.append(window->findChild<QStatusBar *>());
    } else if (widget.inherits("QAbstractScrollArea") || widget.inherits("QLineEdit") ||
               widget.inherits("QMenuBar") || widget.inherits("QStatusBar")) {
        return parts; // all their own
    } else {
        for (QObject *child : widget.children()) {
            auto *part = qobject_cast<QWidget *>(child);
            if (part != nullptr && !part->isWindow()) {
                parts.append(part);
            }
        }
    }
    return parts;
}

void put(QLayout &into, QLayoutItem *item, const QGridLayout *grid, int index)
{
    int row = 0;
    int column = 0;
    int rowSpan = 1;
    int columnSpan = 1;
    if (grid != nullptr) {
        grid->getItemPosition(index, &row, &column, &rowSpan, &columnSpan);
        static_cast<QGridLayout &>(into).addItem(item, row, column, rowSpan, columnSpan,
                                                 item->alignment());
    } else {
        into.addItem(item);
    }
}

/// parts, copies  widgets and their copies, index by index
QLayout *layoutCopyOf(const QLayout &source, const QList<QWidget *> &parts,
                      const QList<QWidget *> &copies)
{
    const auto *grid = qobject_cast<const QGridLayout *>(&source);
    const auto *box = qobject_cast<const QBoxLayout *>(&source);
    if (grid == nullptr && box == nullptr) {
        throw std::runtime_error("a layout of no kind");
    }
    QLayout *copy = grid != nullptr ? static_cast<QLayout *>(new QGridLayout)
                                    : new QBoxLayout(box->direction());
    copy->setContentsMargins(source.contentsMargins());
    if (grid != nullptr) {
        static_cast<QGridLayout *>(copy)->setHorizontalSpacing(grid->horizontalSpacing());
        static_cast<QGridLayout *>(copy)->setVerticalSpacing(grid->verticalSpacing());
    } else {
        copy->setSpacing(source.spacing());
    }
    for (int i = 0; i < source.count(); ++i) {
        QLayoutItem *item = source.itemAt(i);
        if (item->layout() != nullptr) {
            put(*copy, layoutCopyOf(*item->layout(), parts, copies), grid, i);
        } else if (item->widget() != nullptr) {
            QWidget *widget = copies[parts.indexOf(item->widget())];
            copy->addWidget(widget); // which makes the widget its own; then to its place
            if (grid != nullptr) {
                put(*copy, copy->takeAt(copy->count() - 1), grid, i);
            }
        } else {
            const QSizePolicy policy = item->spacerItem()->sizePolicy();
            put(*copy,
                new QSpacerItem(item->sizeHint().width(), item->sizeHint().height(),
                                policy.horizontalPolicy(), policy.verticalPolicy()),
                grid, i);
        }
    }
    return copy;
}

void fill(const QWidget &source, QWidget &copy);

QWidget *copyOf(const QWidget &source, QWidget *parent)
{
    QWidget *copy = kindOf(source).make(source, parent);
    copy->setSizePolicy(source.sizePolicy());
    copy->setMinimumSize(source.minimumSize());
    copy->setMaximumSize(source.maximumSize());
    if (source.isHidden()) {
        copy->hide();
    }
    fill(source, *copy);
    return copy;
}

void fill(const QWidget &source, QWidget &copy)
{
    const QList<QWidget *> parts = partsOf(source);
    QList<QWidget *> copies;
    for (const QWidget *part : parts) {
        copies.append(copyOf(*part, &copy));
    }
    if (auto *splitter = qobject_cast<QSplitter *>(&copy)) {
        for (QWidget *part : copies) {
            splitter->addWidget(part);
        }
    } else if (auto *scroll = qobject_cast<QScrollArea *>(&copy)) {
        scroll->setWidgetResizable(true);
        scroll->setWidget(copies.first());
    } else if (auto *window = qobject_cast<QMainWindow *>(&copy)) {
        window->setCentralWidget(copies[0]);
        window->setMenuWidget(copies[1]);
        window->setStatusBar(static_cast<QStatusBar *>(copies[2]));
    } else if (!parts.isEmpty() && source.layout() != nullptr) {
        copy.setLayout(layoutCopyOf(*source.layout(), parts, copies));
    }
}

int count(const QWidget &widget)
{
    int widgets = 1;
    for (const QWidget *part : partsOf(widget)) {
        widgets += count(*part);
    }
    return widgets;
}

} // namespace

std::unique_ptr<QMainWindow> plainCopyOf(const QMainWindow &window)
{
    auto copy = std::make_unique<QMainWindow>();
    fill(window, *copy);
    copy->resize(window.size());
    return copy;
}

int copiedWidgets(const QMainWindow &window)
{
    return count(window);
}

} // namespace orvel::bench
