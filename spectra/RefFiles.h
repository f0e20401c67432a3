#pragma once

#include <QObject>
#include <QVector>

class ARefFile;

/// The reference rows in the order of the panel; passes their signals on as one.
class RefFiles : public QObject {
    Q_OBJECT

public:
    explicit RefFiles(QObject *parent = nullptr) : QObject(parent) {}

    /// The row must outlive the set, or the set must go first.
    void append(ARefFile *row);
    const QVector<ARefFile *> &rows() const { return m_rows; }
    ARefFile *at(int i) const { return m_rows[i]; }

signals:
    void changedUse(bool f);
    void selectedFile();

private:
    QVector<ARefFile *> m_rows;
};
