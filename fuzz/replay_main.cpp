// Runs a fuzzer over given files, and over all files in given folders: what the corpus holds stays
// right in every build, whatever its compiler.

#include "fuzz/Fuzz.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

QStringList filesOf(const QString &path)
{
    if (!QFileInfo(path).isDir()) {
        return {path};
    }
    QStringList files;
    QDirIterator entries(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files.append(entries.next());
    }
    files.sort();
    return files;
}

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qUtf8Printable(path));
        return false;
    }
    // A copy of exactly this size on the heap, so that a sanitizer sees a step behind its end.
    const QByteArray bytes = file.readAll();
    std::printf("%s\n", qUtf8Printable(path)); // the last line names the input that failed
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                           static_cast<std::size_t>(bytes.size()));
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        for (const QString &path : filesOf(QString::fromLocal8Bit(argv[i]))) {
            if (!replay(path)) {
                return 2;
            }
            ++replayed;
        }
    }
    std::printf("%d inputs\n", replayed);
    if (replayed == 0) {
        std::fprintf(stderr, "usage: %s FILE_OR_FOLDER...\n", argv[0]);
        return 2; // an empty corpus would pass unnoticed
    }
    return 0;
}
