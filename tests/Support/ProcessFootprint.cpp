#include "ProcessFootprint.h"

#include <QDir>
#include <QFile>

#include <malloc.h>
#include <unistd.h>

namespace Varnel::Testing {

namespace {
int entriesIn(const char* folder) {
    return static_cast<int>(
        QDir(QString::fromLatin1(folder)).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}

long residentKB() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    const bool isOpen = statm.open(QFile::ReadOnly);
    return isOpen ? statm.readAll().split(' ').value(1).toLong() * (sysconf(_SC_PAGESIZE) / 1024) : 0;
}
} // namespace

ProcessFootprint processFootprint() {
    malloc_trim(0);
    return {residentKB(), static_cast<long>(mallinfo2().uordblks / 1024), entriesIn("/proc/self/fd"),
            entriesIn("/proc/self/task")};
}

} // namespace Varnel::Testing
