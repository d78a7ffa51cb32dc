#include "Depreciation.h"

#include "ErrorHandler.h"
#include "MessageTexts.h"
#include "Session.h"
#include "WriteScope.h"

#include <QLocale>
#include <cmath>

namespace {

const QString Module = QStringLiteral("frmEquipment");
const QString RecalculateProcedure = QStringLiteral("cmdRecalculate_Click");
const QString DisplayProcedure = QStringLiteral("DisplayData");
constexpr qint64 OverflowNumber = 6;
constexpr qint64 DivisionByZeroNumber = 11;

double realNumber(const QString& text)
{
    return QLocale::c().toDouble(text.trimmed());
}

/** The failure a division by a life of 0 raises: 0/0 overflows, anything else divides by zero. */
void reportZeroLife(Session& session, qint64 total, qint64 salvage)
{
    if (total == salvage) {
        errorHandler(session, Module, RecalculateProcedure, OverflowNumber,
                     QStringLiteral("Overflow"));
    } else {
        errorHandler(session, Module, RecalculateProcedure, DivisionByZeroNumber,
                     QStringLiteral("Division by zero"));
    }
}

} // namespace

std::optional<DepreciationProblem> Depreciation::validate(const DepreciationInputs& inputs)
{
    using Field = DepreciationProblem::Field;
    if (DataHelpers::isBlank(inputs.purchaseYear)) {
        return DepreciationProblem{
            Field::PurchaseYear,
            QStringLiteral(
                "Equipment purchase year is empty.First Enter Equipment purchase year.")};
    }
    if (DataHelpers::isBlank(inputs.totalCost)) {
        return DepreciationProblem{Field::TotalCost,
                                   MessageTexts::notBlank(QStringLiteral("Total cost"))};
    }
    if (DataHelpers::isBlank(inputs.salvageValue)) {
        return DepreciationProblem{Field::SalvageValue,
                                   MessageTexts::notBlank(QStringLiteral("Salvage Value"))};
    }
    if (realNumber(inputs.salvageValue) >= realNumber(inputs.totalCost)) {
        return DepreciationProblem{
            Field::SalvageValue,
            QStringLiteral("Salvage Value should be less then the Total Cost.")};
    }
    if (DataHelpers::isBlank(inputs.assetYears)) {
        return DepreciationProblem{Field::AssetYears,
                                   MessageTexts::notBlank(QStringLiteral("Life of Asset"))};
    }
    return std::nullopt;
}

qint64 Depreciation::wholeNumber(const QString& text)
{
    // nearbyint follows the default rounding mode, to nearest with halves to even.
    return static_cast<qint64>(std::nearbyint(realNumber(text)));
}

QList<DepreciationRow> Depreciation::table(int firstYear, qint64 total, qint64 salvage, int life)
{
    QList<DepreciationRow> rows;
    const double annual = double(total - salvage) / life;
    double accumulated = 0;
    for (int i = 1; i <= life; ++i) {
        accumulated += annual;
        rows.append({firstYear + i - 1, annual, accumulated, double(total) - accumulated});
    }
    return rows;
}

bool Depreciation::recalculate(qint64 equipmentId, const DepreciationInputs& inputs)
{
    if (validate(inputs)) {
        return false;
    }
    const qint64 total = wholeNumber(inputs.totalCost);
    const qint64 salvage = wholeNumber(inputs.salvageValue);
    const int life = inputs.assetYears.trimmed().toInt();
    WriteScope write(m_session, Module, RecalculateProcedure);
    write.exec(QStringLiteral("DELETE FROM tblEquipmentDepreciation WHERE EquipmentID = ?"),
               {equipmentId});
    if (life == 0) {
        // The delete stands: inside an edit its revert brings the old rows back.
        if (write.commit()) {
            reportZeroLife(m_session, total, salvage);
        }
        return false;
    }
    for (const DepreciationRow& row :
         table(inputs.purchaseYear.trimmed().toInt(), total, salvage, life)) {
        write.exec(QStringLiteral("INSERT INTO tblEquipmentDepreciation (EndofYear, "
                                  "AnnualDepreciation, AccumualtedDepreciation, BookValue, "
                                  "EquipmentID) VALUES (?, ?, ?, ?, ?)"),
                   {row.endOfYear, row.annual, row.accumulated, row.book, equipmentId});
    }
    return write.commit();
}

Rows Depreciation::rows(qint64 equipmentId)
{
    return DataHelpers::read(
        m_session, Module, DisplayProcedure,
        QStringLiteral("SELECT EndofYear AS \"End of Year\", AnnualDepreciation AS "
                       "\"Annual Depreciation\", AccumualtedDepreciation AS "
                       "\"Accumualted Depreciation\", BookValue AS \"Book Value\", "
                       "EquipmentID AS \"EquipmentID\" FROM tblEquipmentDepreciation "
                       "WHERE EquipmentID = ? ORDER BY EndofYear"),
        {equipmentId});
}
