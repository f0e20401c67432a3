// Tool tips are attached by name, so a widget that was renamed or added would silently lack one.

#include "panel/FourPs.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QtTest>

class ToolTipsTest : public QObject {
    Q_OBJECT

private slots:
    void everyFieldAndButtonTellsWhatItIs();
    void fileNamesFallBackToTheirSelectors();
};

static bool wantsToolTip(const QWidget *widget)
{
    const QString name = widget->objectName();
    const bool isOurs = !name.isEmpty() && !name.startsWith("qt_");
    return isOurs && name != "FileName" && // shows the path
           (widget->inherits("QLineEdit") || widget->inherits("QAbstractButton") ||
            widget->inherits("QListWidget") || widget->inherits("QPlainTextEdit") ||
            widget->inherits("AFileSelect"));
}

void ToolTipsTest::everyFieldAndButtonTellsWhatItIs()
{
    const FourPs panel;
    QStringList silent;
    int asked = 0;
    for (const QWidget *widget : panel.findChildren<QWidget *>()) {
        if (wantsToolTip(widget)) {
            ++asked;
            if (widget->toolTip().isEmpty() || widget->accessibleDescription().isEmpty())
                silent += widget->parentWidget()->objectName() + '/' + widget->objectName();
        }
    }
    QCOMPARE(silent, QStringList());
    QVERIFY(asked > 200);

    // The same name, another meaning: the widgets around decide.
    const auto tipsOf = [&panel](const char *name) {
        QSet<QString> tips;
        for (const QWidget *widget : panel.findChildren<QWidget *>(QLatin1String(name)))
            tips += widget->toolTip();
        return tips;
    };
    QCOMPARE(tipsOf("UseCB").size(), 2);
    QCOMPARE(tipsOf("XPos").size(), 2);
}

void ToolTipsTest::fileNamesFallBackToTheirSelectors()
{
    const FourPs panel;
    for (const QWidget *name : panel.findChildren<QLineEdit *>(QStringLiteral("FileName"))) {
        QVERIFY(name->toolTip().isEmpty());
        QVERIFY(!name->parentWidget()->toolTip().isEmpty());
    }
}

QTEST_MAIN(ToolTipsTest)

#include "tst_tooltips.moc"
