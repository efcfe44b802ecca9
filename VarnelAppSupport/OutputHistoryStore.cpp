#include <VarnelAppSupport/OutputHistoryStore.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/PrivateFiles.h>
#include <VarnelShared/Text.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <utility>

namespace Varnel {

namespace {

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

void prune(std::vector<OutputHistorySnapshot>& snapshots, Timestamp now, int retentionDays) {
    const std::optional<Timestamp> lastKept = Calendar::addingDays(now, -retentionDays);
    if (!lastKept) {
        return;
    }
    const Timestamp cutoff = Calendar::startOfDay(*lastKept);
    std::erase_if(snapshots, [cutoff](const OutputHistorySnapshot& snapshot) { return snapshot.dayStart < cutoff; });
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
    OutputHistoryArchive archive = read();
    const auto found = std::ranges::find_if(
        archive.snapshots, [&key](const OutputHistorySnapshot& snapshot) { return key.matches(snapshot); });
    return found != archive.snapshots.end() ? std::optional(std::move(*found)) : std::nullopt;
}

std::vector<OutputHistorySnapshot> OutputHistoryStore::loadAllSnapshots(const QString& account,
                                                                        const QString& stationID) const {
    const QString trimmedAccount = trimmed(account);
    const QString trimmedStationID = trimmed(stationID);
    OutputHistoryArchive archive = read();
    std::erase_if(archive.snapshots, [&](const OutputHistorySnapshot& snapshot) {
        return snapshot.account != trimmedAccount || snapshot.stationID != trimmedStationID;
    });
    return std::move(archive.snapshots);
}

void OutputHistoryStore::saveSnapshot(const OutputHistorySnapshot& snapshot, Timestamp now) {
    if (!isFinite(snapshot)) {
        return;
    }
    OutputHistoryArchive archive = read();
    removeMatches(archive.snapshots, {snapshot.dayStart, snapshot.account, snapshot.stationID});
    archive.snapshots.push_back(snapshot);
    prune(archive.snapshots, now, m_retentionDays);
    sortNewestFirst(archive.snapshots);
    write(archive);
}

void OutputHistoryStore::removeSnapshot(Timestamp dayStart, const QString& account, const QString& stationID) {
    OutputHistoryArchive archive = read();
    removeMatches(archive.snapshots, normalizedKey(dayStart, account, stationID));
    write(archive);
}

void OutputHistoryStore::clear() {
    QFile::remove(m_filePath);
}

OutputHistoryArchive OutputHistoryStore::read() const {
    QFile file(m_filePath);
    // Opening anything else, such as a pipe, could wait forever.
    if (!QFileInfo(file).isFile() || !file.open(QFile::ReadOnly)) {
        return {};
    }
    return decodeOutputHistory(file.readAll());
}

void OutputHistoryStore::write(const OutputHistoryArchive& archive) {
    if (archive.snapshots.empty()) {
        clear();
        return;
    }
    // What cannot be written is given up: the samples are still in memory, and the next save tries again.
    [[maybe_unused]] const Result<void> written = writeFileAtomically(m_filePath, encodeOutputHistory(archive));
}

} // namespace Varnel
