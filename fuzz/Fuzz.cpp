#include "fuzz/Fuzz.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return 0;
}

namespace orvel::fuzz {

void require(bool holds, const char *relation)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", relation);
        std::abort();
    }
}

QString scratchPath(const QString &name)
{
    static const QTemporaryDir folder;
    require(folder.isValid(), "a temporary folder can be made");
    return folder.filePath(name);
}

QString scratchFile(const QString &name, const QByteArray &bytes)
{
    QFile file(scratchPath(name));
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                file.write(bytes) == bytes.size() && file.flush(),
            "a temporary file can be written");
    return file.fileName();
}

std::vector<SameText> sameTexts(const QByteArray &bytes)
{
    // A byte-order mark makes it a text of 16 or 32 bits a character, in which no byte stands for
    // itself.
    for (const char *mark : {"\xff\xfe", "\xfe\xff"}) {
        if (bytes.startsWith(mark) || bytes.startsWith(QByteArray(2, '\0') + mark)) {
            return {};
        }
    }
    std::vector<SameText> same = {{"the last line may lack its end", bytes + '\n'}};
    // A carriage return within the bytes of one character splits it into undecodable ones.
    if (QString::fromUtf8(bytes).toUtf8() == bytes) {
        same.push_back({"carriage returns do not count", QByteArray(bytes).replace("\r", "")});
    }
    return same;
}

} // namespace orvel::fuzz
