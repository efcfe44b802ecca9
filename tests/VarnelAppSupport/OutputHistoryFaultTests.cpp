#include <VarnelAppSupport/OutputHistoryStore.h>

#include "HistoryFolder.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>
#include <QScopeGuard>

#include <algorithm>
#include <csignal>
#include <functional>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Varnel {
namespace {

using Testing::HistoryFolder;

const Timestamp day{807919200};

OutputHistorySnapshot dayOf(int samples, double kilowatts) {
    OutputHistorySnapshot snapshot{day, QStringLiteral("me@example.org"), QStringLiteral("S1"), {}};
    for (int i = 0; i < samples; ++i) {
        snapshot.samples.push_back({day + Seconds(60.1 * i), kilowatts});
    }
    return snapshot;
}

std::optional<OutputHistorySnapshot> load(const OutputHistoryStore& store) {
    return store.loadSnapshot(day, QStringLiteral("me@example.org"), QStringLiteral("S1"));
}

/// Saves once and waits to be killed, at the latest with the test itself.
[[noreturn]] void saveUntilKilled(OutputHistoryStore& store, const OutputHistorySnapshot& snapshot) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    store.saveSnapshot(snapshot, day);
    while (true) {
        pause();
    }
}

TEST(OutputHistoryFaults, AKilledSaveLeavesTheOldOrTheNewContent) {
    const HistoryFolder folder;
    OutputHistoryStore store = folder.store();
    const OutputHistorySnapshot snapshots[] = {dayOf(100, 1), dayOf(100, 2)};
    QByteArray contents[2];
    for (const int i : {1, 0}) {
        store.saveSnapshot(snapshots[i], day);
        contents[i] = folder.content();
    }

    // The longest wait follows the machine: every save that ends shortens it and every other lengthens it, so that
    // the kills fall all over a save whatever one takes.
    double longestWait = 1000;
    int current = 0;
    int endedSaves = 0;
    for (int round = 0; round < 1000; ++round) {
        const pid_t saver = fork();
        ASSERT_GE(saver, 0);
        if (saver == 0) {
            saveUntilKilled(store, snapshots[1 - current]);
        }
        usleep(static_cast<useconds_t>(QRandomGenerator::global()->bounded(longestWait)));
        kill(saver, SIGKILL);
        waitpid(saver, nullptr, 0);
        const QByteArray found = folder.content();
        ASSERT_TRUE(found == contents[0] || found == contents[1]) << "after kill " << round;
        const bool ended = found != contents[current];
        longestWait = ended ? std::max(longestWait / 1.1, 10.0) : std::min(longestWait * 1.1, 100'000.0);
        current = ended ? 1 - current : current;
        endedSaves += ended ? 1 : 0;
    }
    EXPECT_GT(endedSaves, 100);
    EXPECT_LT(endedSaves, 900);
}

TEST(OutputHistoryFaults, AFullDiskLeavesTheOldFileAndTheNextSaveWorks) {
    const HistoryFolder folder;
    OutputHistoryStore store = folder.store();
    store.saveSnapshot(dayOf(1440, 1), day);
    {
        const Testing::RecordedLog log;
        const Testing::FullDisk disk;
        store.saveSnapshot(dayOf(1440, 2), day);
        store.saveSnapshot(dayOf(1440, 2), day);
        EXPECT_EQ(log.lines.size(), 1) << "told once";
    }
    EXPECT_EQ(load(store), dayOf(1440, 1));
    EXPECT_EQ(QDir(QFileInfo(store.filePath()).absolutePath()).entryList(QDir::Files).size(), 1);
    store.saveSnapshot(dayOf(1440, 3), day);
    EXPECT_EQ(load(store), dayOf(1440, 3));
}

TEST(OutputHistoryFaults, AnUnreadableFileCountsAsEmptyAndIsReplaced) {
    const HistoryFolder folder;
    OutputHistoryStore store = folder.store();
    folder.put(R"({"account":"me@example.org","dayStart":807919200,"samples":[],"stationID":"S1"})");
    ASSERT_TRUE(load(store).has_value());
    chmod(qPrintable(store.filePath()), 0);
    // Root reads every file, and is nobody for a while.
    const uid_t self = getuid();
    const uid_t reader = self == 0 ? 65534 : self;
    for (const QString& path : {folder.root(), folder.dataFolder(), QFileInfo(store.filePath()).absolutePath()}) {
        EXPECT_EQ(chown(qPrintable(path), reader, gid_t(-1)), 0);
    }
    ASSERT_EQ(seteuid(reader), 0);
    const auto restored = qScopeGuard([self] { EXPECT_EQ(seteuid(self), 0); });
    EXPECT_EQ(load(store), std::nullopt);
    store.saveSnapshot(dayOf(1440, 1), day);
    EXPECT_EQ(load(store), dayOf(1440, 1));
    EXPECT_TRUE(QFileInfo::exists(folder.keptFile()));
}

TEST(OutputHistoryFaults, WhatIsNoSaneFileIsNotWaitedForAndMakesRoom) {
    const HistoryFolder folder;
    OutputHistoryStore store = folder.store();
    const QString path = store.filePath();
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"a folder", [&] { QDir().mkpath(path + QStringLiteral("/inside")); }},
        {"a pipe without a writer", [&] { ASSERT_EQ(mkfifo(qPrintable(path), 0600), 0); }},
        {"100 MB", [&] { folder.put("{}"), QFile::resize(path, 100'000'000); }},
    };
    store.saveSnapshot(dayOf(1, 1), day);
    for (const auto& [name, happens] : rows) {
        SCOPED_TRACE(name);
        QDir(QFileInfo(path).path()).removeRecursively();
        QDir().mkpath(QFileInfo(path).path());
        happens();
        EXPECT_EQ(load(store), std::nullopt);
        store.saveSnapshot(dayOf(1440, 1), day);
        EXPECT_EQ(load(store), dayOf(1440, 1));
        EXPECT_TRUE(QFileInfo::exists(folder.keptFile()));
    }

    QDir(folder.dataFolder()).removeRecursively();
    Testing::putFile(folder.dataFolder(), "a file where the folder would be");
    store.saveSnapshot(dayOf(1440, 1), day);
    EXPECT_EQ(load(store), std::nullopt);
}

} // namespace
} // namespace Varnel
