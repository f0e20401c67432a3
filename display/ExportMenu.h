#pragma once

#include "display/PictureExport.h"

#include <QObject>

class DispArea;
class QMenu;
class QPoint;

/// The context menu of a surface: its picture as PNG, as PDF and on the clipboard, and what it
/// shows as numbers. Files are replaced whole or not at all.
class ExportMenu : public QObject {
    Q_OBJECT

public:
    /// Asks for the path of a file to write; empty when nothing is to be written.
    /// filter  as a file dialog takes it
    using AskPath =
        std::function<QString(QWidget *parent, const QString &suggested, const QString &filter)>;
    using Picture = std::function<orvel::PaintedPicture()>;
    using Text = std::function<QByteArray()>;
    using Write = std::function<bool(const QString &path)>;
    using HasData = std::function<bool()>;

    /// A child of its surface, wherever that moves to.
    ExportMenu(DispArea *surface, Picture picture);

    DispArea *surface() const { return m_surface; }

    /// What there is beside pictures; greyed while there are no data.
    void setCurves(HasData hasData, Text csv);
    void setMap(HasData hasData, Text csv, Write processedMap);
    /// Where the dialog begins; empty: the working folder.
    void setFolder(std::function<QString()> folder) { m_folder = std::move(folder); }
    /// Whether a file may be replaced by what is saved; whoever refuses says why.
    void setMayWrite(std::function<bool(const QString &path)> mayWrite)
    {
        m_mayWrite = std::move(mayWrite);
    }
    /// Instead of the file dialog.
    void setAskPath(AskPath askPath) { m_askPath = std::move(askPath); }

signals:
    void saved(const QString &path);
    void failed(const QString &path);

private:
    void popUp(const QPoint &globalPos);
    void save(const QString &suffix, const QString &kind, const Write &write);
    void saveText(const QString &suffix, const QString &kind, const Text &text);
    void copy();

    DispArea *m_surface;
    Picture m_picture;
    HasData m_hasData;
    Text m_curves;
    Text m_grid;
    Write m_processedMap;
    AskPath m_askPath;
    std::function<QString()> m_folder;
    std::function<bool(const QString &)> m_mayWrite;
};
