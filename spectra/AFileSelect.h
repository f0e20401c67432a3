#pragma once

#include <QFrame>
#include <QStringList>

#include <memory>

class QAction;
class QFileDialog;
class QLineEdit;
namespace Ui {
class AFileSelect;
}

/// Chooses a file: a name field, a dialog, a clear button, and a field for an energy shift where
/// one applies. Files can be dropped onto it.
class AFileSelect : public QFrame {
    Q_OBJECT

public:
    enum Mode { Open = 0, Save = 1 };

    explicit AFileSelect(QWidget *parent = nullptr, int mode = Open);
    ~AFileSelect() override;

    /// Opening: the name is chosen, not typed. Saving: it may be typed.
    void setMode(int mode);
    int mode() const { return m_mode; }
    /// Whether the dialog may choose several files at once.
    void setMultiple(bool f);
    void setNameFilters(const QStringList &filters);
    /// Extension that a name to save gets unless it has it; empty: none.
    void setDefaultExtension(const QString &extension) { m_defaultExtension = extension; }
    /// Hint in the empty name field.
    void setHint(const QString &text);
    /// Hides the caption where a table head has it.
    void hideLabel();

    QString path() const { return m_path; }         ///< of several the first; empty: no file
    QString fileName() const { return m_fileName; } ///< without its folder
    QString dir() const { return m_dir; }           ///< of the last choice
    QString text() const;                           ///< of the name field
    void setText(const QString &text);              ///< as if typed
    QLineEdit *nameEdit() const;
    QLineEdit *deEdit() const; ///< energy shift [eV]
    double enteredDE() const;
    /// The dialog, made at its first use.
    QFileDialog *dialog();
    /// A warning beside the name, with its reason as tool tip; none for an empty reason.
    void showProblem(const QString &reason);
    QString problem() const { return m_problem; }

signals:
    void newDir(const QString &dir);
    void newFilePath(const QString &path);
    void newFilePaths(const QStringList &paths);
    void selectedFile();
    void newDE();

public slots:
    void newFiles(const QStringList &paths);
    virtual void clearFileName();
    void selectingFile(const QString &path);
    virtual void newFile(const QString &path);
    void setDir(const QString &dir);
    void showDE(bool f);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void showName(const QString &text);

    std::unique_ptr<Ui::AFileSelect> m_ui;
    int m_mode = Open;
    bool m_multiple = false;
    QString m_dir;
    QString m_path;
    QString m_fileName;
    QFileDialog *m_dialog = nullptr; ///< a child, or not made yet
    QStringList m_nameFilters;
    QString m_defaultExtension = QStringLiteral("dat");
    QString m_problem;
    QAction *m_problemAction = nullptr;
};
