#pragma once

#include <VarnelPreferences/PreferencesHandlers.h>

#include "../Support/EventLoop.h"

#include <QCoroFuture>
#include <QPromise>

#include <functional>
#include <memory>
#include <vector>

namespace Varnel::Testing {

inline QCoro::Task<bool> outcomeOf(QFuture<bool> outcome) {
    co_return co_await outcome;
}

/// The owner of a preferences window: records what it is handed, and ends each save when told to.
class RecordingOwner {
public:
    RecordingOwner() = default;
    RecordingOwner(const RecordingOwner&) = delete;
    RecordingOwner& operator=(const RecordingOwner&) = delete;

    /// Lets a save that still goes on end, so that nothing of it is left.
    ~RecordingOwner() {
        if (m_outcome) {
            endSave(false);
        }
        settle();
    }

    PreferencesHandlers handlers() {
        return {.save =
                    [this](PreferencesDraft draft) {
                        saved.push_back(std::move(draft));
                        m_outcome = std::make_shared<QPromise<bool>>();
                        m_outcome->start();
                        return outcomeOf(m_outcome->future());
                    },
                .autoSave =
                    [this](const PreferencesDraft& draft) {
                        autoSaved.push_back(draft);
                        onAutoSave();
                    },
                .signOut = [this] { ++signOuts; },
                .cancelSignIn = [this] { ++cancellations; },
                .closed =
                    [this] {
                        ++closings;
                        onClosed();
                    }};
    }

    void endSave(bool isConnected) {
        m_outcome->addResult(isConnected);
        m_outcome->finish();
        m_outcome.reset();
    }

    std::vector<PreferencesDraft> saved;
    std::vector<PreferencesDraft> autoSaved;
    std::function<void()> onAutoSave = [] {};
    std::function<void()> onClosed = [] {};
    int signOuts = 0;
    int cancellations = 0;
    int closings = 0;

private:
    std::shared_ptr<QPromise<bool>> m_outcome;
};

} // namespace Varnel::Testing
