#include <VarnelAppSupport/OutputHistoryStore.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/Logging.h>
#include <VarnelShared/PrivateFiles.h>
#include <VarnelShared/Text.h>

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <utility>

namespace Varnel {

namespace {

constexpr qint64 sizeLimit = 8'388'608;

/// One day goes at midnight, two after a day without the program.
constexpr std::size_t mostDaysDroppedAtOnce = 2;

/// What a snapshot is found by.
struct SnapshotKey {
    Timestamp day;
    QString account;
    QString stationID;

    bool matches(const OutputHistorySnapshot& snapshot) const {
        return snapshot.account == account && snapshot.stationID == stationID &&
               Calendar::isSameDay(snapshot.dayStart, day);
    }
};

SnapshotKey normalizedKey(Timestamp dayStart, const QString& account, const QString& stationID) {
    return {Calendar::startOfDay(dayStart), trimmed(account), trimmed(stationID)};
}

void removeMatches(std::vector<OutputHistorySnapshot>& snapshots, const SnapshotKey& key) {
    std::erase_if(snapshots, [&key](const OutputHistorySnapshot& snapshot) { return key.matches(snapshot); });
}

/// How many days were dropped.
std::size_t prune(std::vector<OutputHistorySnapshot>& snapshots, Timestamp now, int retentionDays) {
    const std::optional<Timestamp> lastKept = Calendar::addingDays(now, -retentionDays);
    if (!lastKept) {
        return 0;
    }
    const Timestamp cutoff = Calendar::startOfDay(*lastKept);
    std::set<Timestamp> dropped;
    std::erase_if(snapshots, [&](const OutputHistorySnapshot& snapshot) {
        const bool isOld = snapshot.dayStart < cutoff;
        if (isOld) {
            dropped.insert(snapshot.dayStart);
        }
        return isOld;
    });
    return dropped.size();
}

/// Snapshots of one day keep their order. std::stable_sort would do, but for clang's complaint that libstdc++
/// implements it with a deprecated function.
void sortNewestFirst(std::vector<OutputHistorySnapshot>& snapshots) {
    std::multimap<Timestamp, OutputHistorySnapshot, std::greater<>> byDay;
    for (OutputHistorySnapshot& snapshot : snapshots) {
        byDay.emplace(snapshot.dayStart, std::move(snapshot));
    }
    snapshots.clear();
    for (auto& [day, snapshot] : byDay) {
        snapshots.push_back(std::move(snapshot));
    }
}

bool isFinite(const OutputHistorySnapshot& snapshot) {
    return std::isfinite(snapshot.dayStart.secondsSinceReferenceDate) &&
           std::ranges::all_of(snapshot.samples, [](const OutputHistorySample& sample) {
               return std::isfinite(sample.timestamp.secondsSinceReferenceDate) && std::isfinite(sample.kilowatts);
           });
}

QString fileIn(const QString& applicationSupportFolder, const QString& bundleIdentifier) {
    const QString folder = applicationSupportFolder.isEmpty() ? QDir::tempPath() : applicationSupportFolder;
    return QStringLiteral("%1/%2/output-history.json").arg(folder, bundleIdentifier);
}

} // namespace

OutputHistoryStore::OutputHistoryStore(const QString& applicationSupportFolder, const QString& bundleIdentifier,
                                       int retentionDays)
    : m_filePath(fileIn(applicationSupportFolder, bundleIdentifier))
    , m_retentionDays(std::max(retentionDays, 1)) {}

std::optional<OutputHistorySnapshot> OutputHistoryStore::loadSnapshot(Timestamp dayStart, const QString& account,
                                                                      const QString& stationID) const {
    const SnapshotKey key = normalizedKey(dayStart, account, stationID);
    OutputHistoryArchive archive = read().value_or(OutputHistoryArchive());
    const auto found = std::ranges::find_if(
        archive.snapshots, [&key](const OutputHistorySnapshot& snapshot) { return key.matches(snapshot); });
    return found != archive.snapshots.end() ? std::optional(std::move(*found)) : std::nullopt;
}

std::vector<OutputHistorySnapshot> OutputHistoryStore::loadAllSnapshots(const QString& account,
                                                                        const QString& stationID) const {
    const QString trimmedAccount = trimmed(account);
    const QString trimmedStationID = trimmed(stationID);
    OutputHistoryArchive archive = read().value_or(OutputHistoryArchive());
    std::erase_if(archive.snapshots, [&](const OutputHistorySnapshot& snapshot) {
        return snapshot.account != trimmedAccount || snapshot.stationID != trimmedStationID;
    });
    return std::move(archive.snapshots);
}

void OutputHistoryStore::saveSnapshot(const OutputHistorySnapshot& snapshot, Timestamp now) {
    if (!isFinite(snapshot)) {
        return;
    }
    auto [archive, keptBecause] = readForChange();
    std::vector<OutputHistorySnapshot>& snapshots = archive.snapshots;
    removeMatches(snapshots, {snapshot.dayStart, snapshot.account, snapshot.stationID});
    snapshots.push_back(snapshot);
    if (prune(snapshots, now, m_retentionDays) > mostDaysDroppedAtOnce) {
        keptBecause = "many of its days were dropped at once";
    }
    sortNewestFirst(snapshots);
    write(archive, keptBecause);
}

void OutputHistoryStore::removeSnapshot(Timestamp dayStart, const QString& account, const QString& stationID) {
    auto [archive, keptBecause] = readForChange();
    removeMatches(archive.snapshots, normalizedKey(dayStart, account, stationID));
    write(archive, keptBecause);
}

void OutputHistoryStore::clear() {
    QFile::remove(m_filePath);
    QFile::remove(damagedPath(m_filePath));
}

/// Fails for what is there and no history.
Result<OutputHistoryArchive> OutputHistoryStore::read() const {
    const Result<std::optional<QByteArray>> content = readRegularFile(m_filePath, sizeLimit);
    if (!content) {
        return failure(content.error());
    }
    if (!*content || (*content)->isEmpty()) {
        return OutputHistoryArchive();
    }
    std::optional<OutputHistoryArchive> archive = decodeOutputHistory(**content);
    if (!archive) {
        return failure(FileError{QStringLiteral("It is no output history.")});
    }
    return std::move(*archive);
}

std::pair<OutputHistoryArchive, const char*> OutputHistoryStore::readForChange() const {
    Result<OutputHistoryArchive> archive = read();
    return archive ? std::pair(std::move(*archive), nullptr)
                   : std::pair(OutputHistoryArchive(), "it could not be understood");
}

void OutputHistoryStore::write(const OutputHistoryArchive& archive, const char* keptBecause) {
    const Result<void> written = replaceFile(archive, keptBecause);
    const QString failed = written ? QString() : written.error().localizedDescription();
    if (!written && failed != m_loggedFailure) {
        qCWarning(lcApp, "The output history could not be written: %s", qUtf8Printable(failed));
    }
    if (written && keptBecause) {
        qCWarning(lcApp, "The former output history is kept as %s: %s", qUtf8Printable(damagedPath(m_filePath)),
                  keptBecause);
    }
    m_loggedFailure = failed; // the samples are still in memory: the next save tries again
}

Result<void> OutputHistoryStore::replaceFile(const OutputHistoryArchive& archive, const char* keptBecause) const {
    if (keptBecause) {
        if (const Result<void> kept = keepAsDamaged(m_filePath); !kept) {
            return kept;
        }
    }
    if (archive.snapshots.empty()) {
        QFile::remove(m_filePath);
        return {};
    }
    return writeFileAtomically(m_filePath, encodeOutputHistory(archive));
}

} // namespace Varnel
