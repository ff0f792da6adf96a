// SPDX-License-Identifier: MIT
// Each library beside the core: its headers, its symbols and what it needs.
#include <varda/csvformat.h>
#include <varda/jsonformat.h>
#include <varda/uddfformat.h>

#include <QtCore/QBuffer>

int main()
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    if (!JsonFormat::write(&buffer, {Dive()}).error.isEmpty())
        return 1;
    buffer.seek(0);
    return JsonFormat::read(&buffer).dives.size() == 1 ? 0 : 1;
}
