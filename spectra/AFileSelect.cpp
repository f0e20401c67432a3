#include "spectra/AFileSelect.h"

#include "display/LightFields.h"
#include "ui_AFileSelect.h"

#include <QAction>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QStyle>
#include <QUrl>

namespace {

/// The folder that a file lies in, links resolved; also of a file that is yet to be written.
QString folderOf(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists()) {
        return info.canonicalPath(); // of a missing file it would be "."
    }
    const QString folder = info.dir().canonicalPath();
    return folder.isEmpty() ? info.absolutePath() : folder;
}

/// Path of a dropped URL; empty when it is no file.
QString pathOf(const QUrl &url)
{
    const QString scheme = QStringLiteral("file://");
    const QString text = url.toString();
    if (!text.startsWith(scheme)) {
        return QString();
    }
    const QString path = text.mid(scheme.size()).simplified();
    if (!path.startsWith(QLatin1Char('/'))) {
        return QStringLiteral("//") + path; // a share: host and folder
    }
    // The text of a URL still encodes a few characters, such as '%' and '#', and lacks doubled
    // blanks. Programs that do not encode at all put a name behind '#' or '?' where no name
    // belongs.
    const QString local = url.toLocalFile();
    const bool isWhole = !url.hasFragment() && !url.hasQuery();
    return isWhole && QFileInfo(local).isFile() ? local : path;
}

} // namespace

AFileSelect::AFileSelect(QWidget *parent, int mode)
    : QFrame(parent), m_ui(std::make_unique<Ui::AFileSelect>()),
      m_nameFilters({QStringLiteral("Data Files (*.dat)"), QStringLiteral("All (* *.*)")})
{
    m_ui->setupUi(this);
    setAcceptDrops(true);
    m_ui->FileName->setAcceptDrops(false); // or they would take a drop as text
    m_ui->DE->setAcceptDrops(false);
    showDE(false);
    setMode(mode);
    connect(m_ui->SelB, &QPushButton::clicked, this, [this] { dialog()->open(); });
    connect(m_ui->ClearB, &QPushButton::clicked, this, [this] { clearFileName(); });
    connect(m_ui->DE, &QLineEdit::editingFinished, this, &AFileSelect::newDE);
}

AFileSelect::~AFileSelect() = default;

void AFileSelect::setMode(int mode)
{
    m_mode = mode;
    const bool saving = mode == Save;
    m_ui->FileName->setReadOnly(!saving);
    m_ui->FileName->setStyleSheet(saving ? QStringLiteral("background-color: rgb(255, 255, 255);")
                                         : QStringLiteral("background-color: rgb(255, 255, 220);"));
    orvel::inkLightFields(*this);
}

void AFileSelect::setMultiple(bool f)
{
    m_multiple = f;
}

void AFileSelect::setNameFilters(const QStringList &filters)
{
    m_nameFilters = filters;
    if (m_dialog) {
        m_dialog->setNameFilters(filters);
    }
}

void AFileSelect::setHint(const QString &text)
{
    m_ui->FileName->setPlaceholderText(text);
}

void AFileSelect::hideLabel()
{
    m_ui->FileLabel->hide();
}

QString AFileSelect::text() const
{
    return m_ui->FileName->text();
}

void AFileSelect::setText(const QString &text)
{
    showName(text);
}

QLineEdit *AFileSelect::nameEdit() const
{
    return m_ui->FileName;
}

QLineEdit *AFileSelect::deEdit() const
{
    return m_ui->DE;
}

double AFileSelect::enteredDE() const
{
    return m_ui->DE->text().toDouble();
}

QFileDialog *AFileSelect::dialog()
{
    if (!m_dialog) {
        m_dialog = new QFileDialog(this);
        m_dialog->setNameFilters(m_nameFilters);
        connect(m_dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
            newFile(path); // virtual
        });
        connect(m_dialog, &QFileDialog::currentChanged, this, &AFileSelect::selectingFile);
        connect(m_dialog, &QFileDialog::filesSelected, this, &AFileSelect::newFiles);
        if (!m_dir.isEmpty()) {
            m_dialog->setDirectory(m_dir);
        }
    }
    m_dialog->setAcceptMode(m_mode == Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    m_dialog->setFileMode(m_mode == Save ? QFileDialog::AnyFile
                          : m_multiple   ? QFileDialog::ExistingFiles
                                         : QFileDialog::ExistingFile);
    return m_dialog;
}

void AFileSelect::showName(const QString &text)
{
    m_ui->FileName->setText(text);
    m_ui->FileName->setToolTip(text);
}

void AFileSelect::showProblem(const QString &reason)
{
    m_problem = reason;
    if (reason.isEmpty()) {
        delete m_problemAction;
        m_problemAction = nullptr;
        return;
    }
    if (!m_problemAction) {
        m_problemAction = m_ui->FileName->addAction(
            style()->standardIcon(QStyle::SP_MessageBoxWarning), QLineEdit::LeadingPosition);
    }
    m_problemAction->setToolTip(reason);
}

void AFileSelect::newFiles(const QStringList &paths)
{
    if (paths.isEmpty()) {
        return;
    }
    QStringList names;
    for (const QString &path : paths) {
        names.append(QFileInfo(path).fileName());
    }
    showName(names.join(QLatin1Char(' ')));
    m_path = paths.first(); // so that clearing tells of it
    m_fileName = names.first();
    m_dir = folderOf(paths.first());
    emit newDir(m_dir);
    emit newFilePaths(paths);
    emit selectedFile();
}

void AFileSelect::clearFileName()
{
    const bool hadFile = !m_path.isEmpty();
    m_path.clear();
    m_fileName.clear();
    showName(QString());
    showProblem(QString());
    if (hadFile) {
        emit newFilePath(QString());
    }
    emit selectedFile();
}

void AFileSelect::selectingFile(const QString &path)
{
    if (m_dialog) {
        m_dialog->setWindowTitle(QFileInfo(path).fileName()); // whole, where the list cuts it off
    }
}

void AFileSelect::newFile(const QString &path)
{
    QString chosen = path;
    if (m_mode == Save && !m_defaultExtension.isEmpty() &&
        QFileInfo(path).suffix() != m_defaultExtension) {
        chosen += QLatin1Char('.') + m_defaultExtension;
    }
    m_path = chosen;
    m_fileName = QFileInfo(chosen).fileName();
    showName(chosen);
    m_dir = folderOf(chosen);
    emit newDir(m_dir);
    emit newFilePath(chosen);
    emit selectedFile();
}

void AFileSelect::setDir(const QString &dir)
{
    m_dir = dir;
    if (m_dialog) {
        m_dialog->setDirectory(dir);
    }
}

void AFileSelect::showDE(bool f)
{
    m_ui->DELabel->setVisible(f);
    m_ui->DE->setVisible(f);
}

void AFileSelect::dragEnterEvent(QDragEnterEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!urls.isEmpty() && !pathOf(urls.first()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void AFileSelect::dropEvent(QDropEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    const QString path = urls.isEmpty() ? QString() : pathOf(urls.first());
    if (!path.isEmpty()) {
        event->acceptProposedAction();
        newFile(path);
    }
}
