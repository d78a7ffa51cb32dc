#include "WorkOrderFilter.h"

#include "CrewRange.h"
#include "Options.h"
#include "Session.h"
#include "SqlValue.h"

namespace {

const QString DateFromKey = QStringLiteral("WoDateFrom");
const QString DateToKey = QStringLiteral("WoDateTo");
// The end date has always been written under this spelling; keys compare without case.
const QString DateToWriteKey = QStringLiteral("WodateTo");
const QString CrewKey = QStringLiteral("WoCrewNo");
const QString AssignCrewKey = QStringLiteral("WoAssignCrew");
const QString GroupKey = QStringLiteral("WoGroup");
const QString DateForm = QStringLiteral("yyyy-MM-dd");

/** "(first) And rest", or rest alone when first is blank. */
SqlFilter prefixed(const SqlFilter& first, const SqlFilter& rest)
{
    if (first.where.isEmpty()) {
        return rest;
    }
    return {QStringLiteral("(%1) And %2").arg(first.where, rest.where), first.values + rest.values};
}

QDate optionDate(Session& session, const QString& key)
{
    const QDate day = QDate::fromString(Options::option(session, key, true).trimmed(), DateForm);
    return day.isValid() ? day : session.today();
}

} // namespace

const QString WorkOrderFilter::DefaultCrewField = QStringLiteral("tblCrew.CrewNumber");

SqlFilter WorkOrderFilter::condition(const QString& crewField, bool useAssignCrew) const
{
    const SqlFilter dates{QStringLiteral("(NextScheduledDate >= ? and NextScheduledDate <= ?)"),
                          {SqlValue::date(from), SqlValue::date(to)}};
    const QString field = crewField.trimmed().isEmpty() ? DefaultCrewField : crewField;
    SqlFilter result = prefixed(CrewRange::condition(crewRange, field), dates);
    if (useAssignCrew) {
        result =
            prefixed(CrewRange::condition(assignCrew, QStringLiteral("Ecrew.CrewNumber")), result);
    }
    return result;
}

WorkOrderFilter WorkOrderFilter::load(Session& session)
{
    WorkOrderFilter filter;
    filter.from = optionDate(session, DateFromKey);
    filter.to = optionDate(session, DateToKey);
    filter.crewRange = Options::option(session, CrewKey, true);
    filter.assignCrew = Options::option(session, AssignCrewKey, true);
    filter.group = Options::option(session, GroupKey, true).trimmed() == u"1";
    return filter;
}

void WorkOrderFilter::save(Session& session) const
{
    Options::setOption(session, DateFromKey, from.toString(DateForm), true);
    Options::setOption(session, DateToWriteKey, to.toString(DateForm), true);
    Options::setOption(session, CrewKey, crewRange, true);
    Options::setOption(session, AssignCrewKey, assignCrew, true);
    Options::setOption(session, GroupKey, group ? QStringLiteral("1") : QStringLiteral("0"), true);
}
