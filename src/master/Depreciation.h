#pragma once

#include "DataHelpers.h"

#include <QList>
#include <QString>
#include <optional>

class Session;

/** The four inputs of the depreciation section, as their fields show them. */
struct DepreciationInputs
{
    QString purchaseYear;
    QString totalCost;
    QString salvageValue;
    QString assetYears;
};

/** Why the table cannot be worked out, and the field the user must correct. */
struct DepreciationProblem
{
    enum class Field { PurchaseYear, TotalCost, SalvageValue, AssetYears };
    Field field;
    QString message;
};

/** One year of the straight-line table. */
struct DepreciationRow
{
    int endOfYear = 0;
    double annual = 0;
    double accumulated = 0;
    double book = 0;

    bool operator==(const DepreciationRow&) const = default;
};

/**
 * The straight-line depreciation of a machine: the checks of its inputs, the
 * table itself and the rows kept in tblEquipmentDepreciation. The rows are
 * rebuilt only on demand, never when an input changes.
 */
class Depreciation
{
public:
    explicit Depreciation(Session& session) : m_session(session) {}

    /** The first check the inputs fail: year, cost, salvage, salvage below cost, life. */
    static std::optional<DepreciationProblem> validate(const DepreciationInputs& inputs);
    /** A money field's text as a whole number, halves to even: the cents are dropped on purpose. */
    static qint64 wholeNumber(const QString& text);
    /**
     * One row a year from firstYear for life years (life above 0), each with a full
     * year's share of total - salvage.
     */
    static QList<DepreciationRow> table(int firstYear, qint64 total, qint64 salvage, int life);

    /**
     * Replaces the machine's rows with the table of inputs, joining an open edit so
     * that its revert drops them; false, with nothing written, for inputs validate
     * refuses. A life of 0 is reported as a failure after the old rows are deleted.
     */
    bool recalculate(qint64 equipmentId, const DepreciationInputs& inputs);
    /** The grid's rows of the machine by year, under their shown captions. */
    Rows rows(qint64 equipmentId);

private:
    Session& m_session;
};
