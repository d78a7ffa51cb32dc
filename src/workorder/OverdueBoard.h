#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QVariant>

class Session;

/**
 * What the overdue board lists: machines with a service that fell due within
 * the last 30 days and stands on no work order, and the open work orders.
 */
class OverdueBoard
{
public:
    /** One row of the board: "unit - name", and the work order number or null. */
    struct Row
    {
        QString unit;
        QVariant workOrderNo;
    };

    static inline const QString OpenWorkOrders = QStringLiteral("Open Work Order");
    static inline const QString OverdueServices = QStringLiteral("Over Due Service");
    /** How far back a due service stays on the board. */
    static constexpr int WindowDays = 30;

    explicit OverdueBoard(Session& session);

    /** Both groups at the moment now, each by unit; overdue rows have a null work order. */
    QList<Row> loadData(const QDateTime& now);
    /** The same at the session clock's present moment. */
    QList<Row> loadData();

    /**
     * For a link of an overdue row: remembers the last 30 days as the work order
     * screen's range and answers the unit number to select there.
     */
    QString preparePrintFilter(const QString& unit);
    /** The unit number of a row's text: all up to two characters before the first "-". */
    static QString unitNoOf(const QString& unit);

private:
    Session& m_session;
};
