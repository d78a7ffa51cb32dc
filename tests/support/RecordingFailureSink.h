#pragma once

#include "Failure.h"

#include <QList>

/** Keeps every failure reported, for tests to look at. */
class RecordingFailureSink : public FailureSink
{
public:
    void report(const Failure& failure) override { m_failures.append(failure); }
    const QList<Failure>& failures() const { return m_failures; }
    bool isEmpty() const { return m_failures.isEmpty(); }
    void clear() { m_failures.clear(); }

private:
    QList<Failure> m_failures;
};
