#pragma once

#include <QDate>
#include <QDateTime>

/**
 * The date and time the whole program believes.
 * A fixed day (from --today) keeps the time of day running, so that
 * time stamps stay ordered while every date rule sees that day.
 */
class Clock
{
public:
    void setToday(const QDate& day) { m_fixedDay = day; }
    bool isFixed() const { return m_fixedDay.isValid(); }

    QDate today() const { return isFixed() ? m_fixedDay : QDate::currentDate(); }
    QDateTime now() const
    {
        const QDateTime real = QDateTime::currentDateTime();
        return isFixed() ? QDateTime(m_fixedDay, real.time()) : real;
    }

private:
    QDate m_fixedDay;
};
