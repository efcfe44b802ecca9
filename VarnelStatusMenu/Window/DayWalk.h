#pragma once

#include <VarnelStatusMenu/Window/OutputDay.h>

namespace Varnel {

/// Which of the days is shown: today, which is always there, or an earlier one that has readings.
class DayWalk {
public:
    /// Takes the days that there are, in any order and with today's readings among them or not. The shown day stays
    /// shown while it is there; today is shown otherwise, and goes on being shown when the day changes.
    void setDays(std::vector<OutputDay> days, QDate today);

    /// Replaces today's readings.
    void setToday(OutputCurve readings);

    const OutputDay& shown() const;
    bool isTodayShown() const { return !m_earlier; }
    bool hasEarlier() const;
    bool hasLater() const { return m_earlier.has_value(); }

    /// To the nearest day before that has readings; stays where there is none.
    void goBack();
    void goForth();
    void goToToday() { m_earlier.reset(); }

private:
    std::vector<OutputDay> m_past; ///< oldest first
    OutputDay m_today;
    std::optional<std::size_t> m_earlier; ///< what is shown of `m_past`; none: today
};

} // namespace Varnel
