#include "DateReadings.h"

#include "DataHelpers.h"
#include "Options.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

namespace {

/** What the two kinds differ in. */
struct KindTexts
{
    const char* form;
    const char* grid;
    const char* title;
    const char* column;
    const char* dateCaption; ///< the date's words in the grid's heads
    const char* fromOption;
    const char* toOption;
    const char* fault; ///< followed by the old date and ")."
};

constexpr KindTexts Inspection{
    "frmInspectionDateReading", "grdInspectiondate",
    "Inspection Date Reading",  "InspectionDate",
    "Inspection Date",          "InspectionDateFrom",
    "InspectionDateTo",         "New Inspection date should be greater than old Inspection Date(",
};

constexpr KindTexts License{
    "frmLicenseDateReading",
    "grdLicensedate",
    "License Renewal Date Reading",
    "LicenseRenewalDate",
    "License Renewal Date",
    "LicenseDateFrom",
    "LicenseDateTo",
    "New License Renewal Date should be greater than Old License Renewal Date(",
};

const KindTexts& texts(DateReadings::Kind kind)
{
    return kind == DateReadings::Kind::Inspection ? Inspection : License;
}

QString latin(const char* text)
{
    return QString::fromLatin1(text);
}

/** How an old date is named in the fault message. */
const QString FaultDateFormat = QStringLiteral("MM/dd/yyyy");

/** A remembered date as the range shows it, its two-digit year in the century nearest today. */
QDate readRangeDate(const QString& text, const QDate& today)
{
    QDate day = QDate::fromString(text.trimmed(), DateReadings::RangeFormat);
    if (!day.isValid()) {
        return day;
    }
    constexpr int HalfCentury = 50;
    day = day.addYears((today.year() / 100 - day.year() / 100) * 100);
    if (day.year() > today.year() + HalfCentury) {
        return day.addYears(-100);
    }
    return day.year() < today.year() - HalfCentury ? day.addYears(100) : day;
}

} // namespace

DateReadings::DateReadings(Session& session, Kind kind) : m_session(session), m_kind(kind) {}

QString DateReadings::formName() const
{
    return latin(texts(m_kind).form);
}

QString DateReadings::gridName() const
{
    return latin(texts(m_kind).grid);
}

QString DateReadings::title() const
{
    return latin(texts(m_kind).title);
}

QStringList DateReadings::heads() const
{
    const QString date = latin(texts(m_kind).dateCaption);
    return {QStringLiteral("Unit #"), QStringLiteral("Equipment Name"),
            QStringLiteral("Old ") + date, QStringLiteral("New ") + date, QStringLiteral("Select")};
}

QDate DateReadings::optionDate(const QString& name) const
{
    return readRangeDate(Options::option(m_session, name, true), m_session.today());
}

DateRange DateReadings::range() const
{
    DateRange range{optionDate(latin(texts(m_kind).fromOption)),
                    optionDate(latin(texts(m_kind).toOption))};
    if (!range.from.isValid()) {
        range.from = m_session.today().addYears(-1);
    }
    if (!range.to.isValid()) {
        range.to = m_session.today();
    }
    return range;
}

void DateReadings::storeRange(const DateRange& range)
{
    Options::setOption(m_session, latin(texts(m_kind).fromOption), range.from.toString(RangeFormat),
                       true);
    Options::setOption(m_session, latin(texts(m_kind).toOption), range.to.toString(RangeFormat),
                       true);
}

QList<DateReading> DateReadings::list(const DateRange& range)
{
    const QString column = latin(texts(m_kind).column);
    const Rows rows = DataHelpers::read(
        m_session, formName(), QStringLiteral("RefreshRecordSet"),
        QStringLiteral("SELECT EquipmentID, UnitNo, EquipmentName, %1 FROM tblEquipment "
                       "WHERE %1 >= ? AND %1 <= ? ORDER BY UnitNo, EquipmentID")
            .arg(column),
        {SqlValue::date(range.from), SqlValue::date(range.to)});
    QList<DateReading> readings;
    for (const QSqlRecord& row : rows) {
        readings.append({row.value(0).toLongLong(), row.value(1).toString(),
                         row.value(2).toString(), SqlValue::toDate(row.value(3)), QDate()});
    }
    return readings;
}

QDate DateReadings::addOneYear(const QDate& oldDate)
{
    // A calendar year, not 365 days; addYears turns 29 February into 28 February.
    return oldDate.addYears(1);
}

QString DateReadings::dateFault(const QDate& oldDate, const QDate& newDate) const
{
    if (newDate > oldDate) {
        return QString();
    }
    return latin(texts(m_kind).fault) + oldDate.toString(FaultDateFormat) + QStringLiteral(").");
}

bool DateReadings::update(const QList<DateReading>& readings)
{
    WriteScope write(m_session, formName(), QStringLiteral("cmdUpdate_Click"));
    const QString sql = QStringLiteral("UPDATE tblEquipment SET %1 = ? WHERE EquipmentID = ?")
                            .arg(latin(texts(m_kind).column));
    for (const DateReading& reading : readings) {
        if (!reading.newDate.isValid()) {
            continue;
        }
        const QString fault = dateFault(reading.oldDate, reading.newDate);
        if (!fault.isEmpty()) {
            write.fail(fault);
            break;
        }
        write.exec(sql, {SqlValue::date(reading.newDate), reading.equipmentId});
    }
    return write.commit();
}
