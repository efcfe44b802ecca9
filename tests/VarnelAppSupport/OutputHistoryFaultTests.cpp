#include <VarnelAppSupport/OutputHistoryStore.h>

#include "HistoryFolder.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
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

/// Lets no file grow beyond `bytes`, as a full disk does.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

/// Takes root's rights over foreign files away for a while; anybody else has none.
class OrdinaryUser {
public:
    OrdinaryUser() { change(nobody); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() { change(0); }

    static constexpr uid_t nobody = 65534;

private:
    void change(uid_t user) const {
        if (m_isRoot && seteuid(user) != 0) {
            qFatal("The user of the test cannot be changed");
        }
    }

    bool m_isRoot = getuid() == 0;
};

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
        const FileSizeLimit fullDisk(16384);
        store.saveSnapshot(dayOf(1440, 2), day);
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
    for (const QString& path : {folder.root(), folder.dataFolder(), QFileInfo(store.filePath()).absolutePath()}) {
        [[maybe_unused]] const int changed = chown(qPrintable(path), OrdinaryUser::nobody, OrdinaryUser::nobody);
    }
    const OrdinaryUser user;
    EXPECT_EQ(load(store), std::nullopt);
    store.saveSnapshot(dayOf(1440, 1), day);
    EXPECT_EQ(load(store), dayOf(1440, 1));
}

TEST(OutputHistoryFaults, WhatStandsInTheWayIsAbsorbed) {
    const HistoryFolder folder;
    OutputHistoryStore store = folder.store();
    QDir().mkpath(store.filePath() + QStringLiteral("/inside"));
    EXPECT_EQ(load(store), std::nullopt);
    store.saveSnapshot(dayOf(1440, 1), day);
    store.clear();
    EXPECT_TRUE(QDir(store.filePath()).exists(QStringLiteral("inside")));
    EXPECT_EQ(QDir(QFileInfo(store.filePath()).absolutePath()).entryList(QDir::Files).size(), 0);

    QDir(folder.dataFolder()).removeRecursively();
    QFile inTheWay(folder.dataFolder());
    ASSERT_TRUE(inTheWay.open(QFile::WriteOnly));
    store.saveSnapshot(dayOf(1440, 1), day);
    EXPECT_EQ(load(store), std::nullopt);

    inTheWay.remove();
    QDir().mkpath(QFileInfo(store.filePath()).absolutePath());
    ASSERT_EQ(mkfifo(qPrintable(store.filePath()), 0600), 0);
    EXPECT_EQ(load(store), std::nullopt) << "a pipe without a writer is not waited for";
    store.saveSnapshot(dayOf(1440, 1), day);
    EXPECT_EQ(load(store), dayOf(1440, 1));
}

} // namespace
} // namespace Varnel
