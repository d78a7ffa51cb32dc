#pragma once

#include <QString>

/** One row of tblCrew as a screen edits it. */
struct Crew
{
    qint64 crewId = 0;
    qint64 crewNumber = 0;
    QString description;
};
