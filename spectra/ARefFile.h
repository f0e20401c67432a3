#pragma once

#include <QFrame>

#include <memory>

class AXafsFileSelect;
class QLineEdit;
namespace Ui {
class ARefFile;
}

/// One reference compound: its spectrum, its valence, and what the analysis found of it.
class ARefFile : public QFrame {
    Q_OBJECT

public:
    explicit ARefFile(QWidget *parent = nullptr);
    ~ARefFile() override;

    void setName(const QString &name);
    bool isUsed() const;
    /// Listeners hear of a change by this call twice: by the box and by the call.
    void setUse(bool f);
    AXafsFileSelect *selector() const;
    QLineEdit *valenceEdit() const;
    double valence() const;
    QLineEdit *ratioDisp() const;
    QLineEdit *amountDisp() const;

signals:
    void changedUse(bool f);
    void selectedFile();
    void foundNewEdge(double e);

private:
    std::unique_ptr<Ui::ARefFile> m_ui;
};
