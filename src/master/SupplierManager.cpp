#include "SupplierManager.h"

#include "StateList.h"
#include "WriteScope.h"

#include <QRegularExpression>

namespace {

const QString Module = QStringLiteral("clsSupplier_Manager");

constexpr RecordUse SupplierUses[] = {
    {"tblEquipment", "SupplierID", "Equipment"},
    {"tblPart", "SupplierID", "Part"},
};

// Every column but the key, in the order of supplierValues.
const QStringList SupplierColumns{
    QStringLiteral("Name"),        QStringLiteral("Tax"),      QStringLiteral("Terms"),
    QStringLiteral("CreditLimit"), QStringLiteral("Email"),    QStringLiteral("WebSite"),
    QStringLiteral("Address"),     QStringLiteral("Address2"), QStringLiteral("City"),
    QStringLiteral("State"),       QStringLiteral("Zip"),      QStringLiteral("Phone"),
    QStringLiteral("Fax"),         QStringLiteral("Atten"),    QStringLiteral("LicenseNo"),
    QStringLiteral("ContactName"), QStringLiteral("Notes")};

/** The phone as typed, or empty text when the mask was left unfilled. */
QString phoneOrEmpty(const QString& phone)
{
    static const QRegularExpression maskLiterals(QStringLiteral("[()\\- ]"));
    return QString(phone).remove(maskLiterals).isEmpty() ? QString() : phone;
}

QVariantList supplierValues(const Supplier& s)
{
    return {s.name,
            s.tax,
            s.terms,
            s.creditLimit,
            s.email,
            s.webSite,
            s.address,
            s.address2,
            s.city,
            s.state,
            s.zip,
            phoneOrEmpty(s.phone),
            phoneOrEmpty(s.fax),
            s.atten,
            s.licenseNo,
            s.contactName,
            s.notes};
}

} // namespace

Rows SupplierManager::list()
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblSupplier"), {},
                                  QStringLiteral("SupplierID"));
}

Rows SupplierManager::states()
{
    return StateList::allStates(m_session);
}

qint64 SupplierManager::generateId()
{
    return DataHelpers::generateId(m_session, QStringLiteral("SupplierID"),
                                   QStringLiteral("tblSupplier"));
}

bool SupplierManager::saveRecord(const Supplier& supplier, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    const QVariantList values = supplierValues(supplier) + QVariantList{supplier.supplierId};
    if (adding) {
        const QString marks = QStringLiteral("?, ").repeated(SupplierColumns.size());
        write.exec(QStringLiteral("INSERT INTO tblSupplier (%1, SupplierID) VALUES (%2?)")
                       .arg(SupplierColumns.join(QStringLiteral(", ")), marks),
                   values);
    } else {
        write.exec(QStringLiteral("UPDATE tblSupplier SET %1 = ? WHERE SupplierID = ?")
                       .arg(SupplierColumns.join(QStringLiteral(" = ?, "))),
                   values);
    }
    return write.commit();
}

bool SupplierManager::deleteRecord(qint64 supplierId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblSupplier WHERE SupplierID = ?"), {supplierId});
    return write.commit();
}

QString SupplierManager::canDeleteSupplier(qint64 supplierId)
{
    return DataHelpers::firstUse(m_session, SupplierUses, supplierId, QStringLiteral("N"));
}
