#include "display/ExportMenu.h"

#include "display/DispArea.h"
#include "text/OutputFile.h"

#include <QClipboard>
#include <QCursor>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QToolTip>

#include <new>

namespace {

constexpr int kCopyFineness = 2;

/// The dialog itself puts the ending behind a name without one, so that it asks before that file
/// is replaced and not before another.
QString askByDialog(QWidget *parent, const QString &suggested, const QString &filter)
{
    const QFileInfo name(suggested);
    QFileDialog dialog(parent, QString(), name.path(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(name.suffix());
    dialog.selectFile(name.fileName());
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

/// A title as a file name without an ending: letters and digits of any script, the rest as single
/// lines.
QString fileNameOf(const QString &title)
{
    QString name;
    for (const QChar c : title) {
        if (c.isLetterOrNumber()) {
            name += c;
        } else if (!name.isEmpty() && !name.endsWith(QLatin1Char('_'))) {
            name += QLatin1Char('_');
        }
    }
    return name;
}

bool writeWhole(const QString &path, const QByteArray &bytes)
{
    orvel::OutputFile file(path);
    if (bytes.isEmpty() || !file.open()) {
        return false;
    }
    file.write(bytes);
    return file.commit();
}

} // namespace

ExportMenu::ExportMenu(DispArea *surface, Picture picture)
    : QObject(surface), m_surface(surface), m_picture(std::move(picture)), m_askPath(askByDialog)
{
    surface->setMenu([this](const QPoint &globalPos) { popUp(globalPos); });
}

void ExportMenu::setCurves(HasData hasData, Text csv)
{
    m_hasData = std::move(hasData);
    m_curves = std::move(csv);
}

void ExportMenu::setMap(HasData hasData, Text csv, Write processedMap)
{
    m_hasData = std::move(hasData);
    m_grid = std::move(csv);
    m_processedMap = std::move(processedMap);
}

void ExportMenu::popUp(const QPoint &globalPos)
{
    auto *menu = new QMenu(m_surface);
    menu->setObjectName(QStringLiteral("ExportMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char *name, const QString &text, bool isOn, auto act) {
        QAction *action = menu->addAction(text);
        action->setObjectName(QLatin1String(name));
        action->setEnabled(isOn);
        connect(action, &QAction::triggered, this, act);
    };
    const QString png = QStringLiteral("png");
    const struct {
        const char *name;
        QString text;
        int fineness;
    } pictures[] = {{"Png1", tr("Save as PNG..."), 1},
                    {"Png2", tr("Save as PNG, 2 times as fine..."), 2},
                    {"Png4", tr("Save as PNG, 4 times as fine..."), 4}};
    for (const auto &entry : pictures) {
        add(entry.name, entry.text, true, [this, png, fineness = entry.fineness] {
            saveText(png, QStringLiteral("PNG"), [&] { return pngOf(m_picture(), fineness); });
        });
    }
    add("Pdf", tr("Save as PDF..."), true, [this] {
        saveText(QStringLiteral("pdf"), QStringLiteral("PDF"), [&] { return pdfOf(m_picture()); });
    });
    add("Copy", tr("Copy picture"), true, [this] { copy(); });
    const bool hasData = m_hasData && m_hasData();
    const QString csv = QStringLiteral("csv");
    if (m_curves || m_grid) {
        menu->addSeparator();
    }
    if (m_curves) {
        add("Curves", tr("Save curves as CSV..."), hasData,
            [this, csv] { saveText(csv, QStringLiteral("CSV"), m_curves); });
    }
    if (m_grid) {
        add("Grid", tr("Save values as CSV..."), hasData,
            [this, csv] { saveText(csv, QStringLiteral("CSV"), m_grid); });
        add("ProcessedMap", tr("Save values as a processed map..."), hasData,
            [this] { save(QStringLiteral("dat"), QStringLiteral("TDData0"), m_processedMap); });
    }
    menu->popup(globalPos);
}

void ExportMenu::saveText(const QString &suffix, const QString &kind, const Text &text)
{
    save(suffix, kind, [&](const QString &path) { return writeWhole(path, text()); });
}

void ExportMenu::save(const QString &suffix, const QString &kind, const Write &write)
{
    const QString dot = QStringLiteral(".") + suffix;
    const QString filter = QStringLiteral("%1 (*%2)").arg(kind, dot);
    const QString folder = m_folder ? m_folder() : QString();
    const QString name = fileNameOf(m_picture().title) + dot;
    const QString path =
        m_askPath(m_surface, folder.isEmpty() ? name : QDir(folder).filePath(name), filter);
    if (path.isEmpty() || (m_mayWrite && !m_mayWrite(path))) {
        return;
    }
    bool isWritten = false;
    try {
        isWritten = write(path);
    } catch (const std::bad_alloc &) { // may not pass through the event loop
        qWarning("there is not enough memory to save a picture or its values");
    }
    QToolTip::showText(
        QCursor::pos(),
        (isWritten ? tr("Written: %1") : tr("Can't write %1")).arg(QDir::toNativeSeparators(path)),
        m_surface);
    if (isWritten) {
        emit saved(path);
    } else {
        emit failed(path);
    }
}

void ExportMenu::copy()
{
    const QImage image = imageOf(m_picture(), kCopyFineness);
    if (!image.isNull()) {
        QGuiApplication::clipboard()->setImage(image);
    }
}
