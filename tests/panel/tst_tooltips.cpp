// Tool tips are attached by name, so a widget that was renamed or added would silently lack one.

#include "panel/FourPs.h"

#include <QRegularExpression>
#include <QtTest>

class ToolTipsTest : public QObject {
    Q_OBJECT

private slots:
    void everyFieldAndButtonTellsWhatItIs()
    {
        const FourPs panel;
        QStringList silent;
        int asked = 0;
        for (const QWidget *widget :
             panel.findChildren<QWidget *>(QRegularExpression("^(?!qt_).+"))) {
            const char *const kinds[] = {"QLineEdit", "QAbstractButton", "QListWidget",
                                         "QPlainTextEdit", "AFileSelect"};
            const bool isAsked =
                std::any_of(std::begin(kinds), std::end(kinds),
                            [widget](const char *kind) { return widget->inherits(kind); });
            if (widget->objectName() == "FileName") { // shows the path, or what its selector says
                QVERIFY(widget->toolTip().isEmpty() &&
                        !widget->parentWidget()->toolTip().isEmpty());
            } else if (isAsked) {
                ++asked;
                if (widget->toolTip().isEmpty() || widget->accessibleDescription().isEmpty()) {
                    silent += widget->parentWidget()->objectName() + '/' + widget->objectName();
                }
            }
        }
        QCOMPARE(silent, QStringList());
        QVERIFY(asked > 200);
    }
};

QTEST_MAIN(ToolTipsTest)

#include "tst_tooltips.moc"
