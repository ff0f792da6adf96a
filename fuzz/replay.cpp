// SPDX-License-Identifier: MIT
// Stands in for libFuzzer where there is none: runs every file of the folders it is given, once.
#include "fuzz.h"

#include <QtCore/qdiriterator.h>
#include <QtCore/qfile.h>

#include <cstdio>

int main(int argc, char *argv[])
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator files(QString::fromLocal8Bit(argv[i]), QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            check(file.open(QIODevice::ReadOnly), "a file of the corpus can be read");
            const QByteArray input = file.readAll();
            // The last one printed is the one that failed.
            std::printf("%s\n", qPrintable(file.fileName()));
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                                   std::size_t(input.size()));
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
