#include "FixedAddresses.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <cstdio>
#include <sys/personality.h>
#include <unistd.h>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

constexpr unsigned long query = 0xffffffff;

bool turnOff()
{
    const int current = personality(query);
    return current != -1 && (current & ADDR_NO_RANDOMIZE) == 0 &&
           personality(static_cast<unsigned long>(current) | ADDR_NO_RANDOMIZE) != -1;
}

/// \brief Our own arguments, each ended by a zero byte.
QByteArray commandLine()
{
    QFile file(QStringLiteral("/proc/self/cmdline"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::vector<char*> pointersInto(QByteArray& line)
{
    std::vector<char*> arguments;
    for (qsizetype i = 0; i < line.size();
         i += static_cast<qsizetype>(qstrlen(line.constData() + i)) + 1) {
        arguments.push_back(line.data() + i);
    }
    arguments.push_back(nullptr);
    return arguments;
}

} // namespace

void FixedAddresses::ensure()
{
    QByteArray line = commandLine();
    if (line.isEmpty() || !turnOff()) {
        return;
    }
    std::vector<char*> arguments = pointersInto(line);
    std::fflush(nullptr);
    qunsetenv("QT_HASH_SEED"); // the seed is fixed; Qt's word on that would take up memory
    execv("/proc/self/exe", arguments.data()); // comes back only if it fails: go on as we are
}

} // namespace Ovra::GeoTool
