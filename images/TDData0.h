#pragma once

#include "text/ReadFailure.h"

#include <QObject>
#include <QRectF>
#include <QString>
#include <QVector>

/// A processed map: width x height doubles with a validity flag each, and the binary file that
/// stores it (docs/formats.md shows the layout byte by byte).
class TDData0 : public QObject {
    Q_OBJECT

public:
    explicit TDData0(QObject *parent = nullptr);

    /// Reads a file. False, and nothing changes, when it is no processed map or its header gives
    /// impossible sizes (readFailure() says which). A file that ends early is read as far as it
    /// goes: the missing pixels are 0 and not valid; too many missing ones are refused.
    bool read(const QString &path);
    /// Writes the map; false, with the old file left whole, when that is not possible.
    /// The object's data and flags must have width * height elements.
    bool write(const QString &path);

    QString dataId; ///< free text of one line
    int width = 0;
    int height = 0;
    QVector<double> data; ///< width * height values, x fastest
    QVector<bool> valid;  ///< same order
    double minVal = 1e300;
    double maxVal = -1e300;

    orvel::ReadFailure readFailure() const { return m_readFailure; }
    /// Rectangle of interest in pixels; null when there is none.
    QRectF region() const { return m_region; }

    /// Whether a file begins as a processed map does.
    static bool isProcessedMap(const QString &path);

public slots:
    void setRegion(const QRectF &rR);

signals:
    void regionCleared();

private:
    /// What the header says; taken over only when the whole file can be read.
    struct Header {
        qint64 size = 0; ///< bytes before the data block
        int width = 0;
        int height = 0;
        QString dataId;
        double minVal = 1e300;
        double maxVal = -1e300;
    };

    bool readHeader(const QString &path, Header &header) const;
    QByteArray headerText() const;

    QRectF m_region;
    orvel::ReadFailure m_readFailure = orvel::ReadFailure::None;
};
