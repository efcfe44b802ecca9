#include <VarnelStatusMenu/Window/DayWalk.h>

#include <algorithm>
#include <utility>

namespace Varnel {

void DayWalk::setDays(std::vector<OutputDay> days, QDate today) {
    const std::optional<QDate> shownDate = m_earlier ? std::optional(shown().date) : std::nullopt;
    std::sort(days.begin(), days.end(), [](const OutputDay& a, const OutputDay& b) { return a.date < b.date; });
    m_today = {today, {}};
    m_past.clear();
    m_earlier.reset();
    for (OutputDay& day : days) {
        if (day.date == today) {
            m_today = std::move(day);
        } else if (day.date < today && !day.readings.empty()) {
            // A clock that was ahead has left days that are yet to come: they are shown when they have come.
            m_past.push_back(std::move(day));
            m_earlier = m_past.back().date == shownDate ? std::optional(m_past.size() - 1) : m_earlier;
        }
    }
}

void DayWalk::setToday(OutputCurve readings) {
    m_today.readings = std::move(readings);
}

const OutputDay& DayWalk::shown() const {
    return m_earlier ? m_past[*m_earlier] : m_today;
}

bool DayWalk::hasEarlier() const {
    return m_earlier.value_or(m_past.size()) > 0;
}

void DayWalk::goBack() {
    if (hasEarlier()) {
        m_earlier = m_earlier.value_or(m_past.size()) - 1;
    }
}

void DayWalk::goForth() {
    if (m_earlier) {
        m_earlier = *m_earlier + 1 < m_past.size() ? std::optional(*m_earlier + 1) : std::nullopt;
    }
}

} // namespace Varnel
