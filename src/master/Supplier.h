#pragma once

#include <QString>

/** One row of tblSupplier as a screen edits it. */
struct Supplier
{
    qint64 supplierId = 0;
    QString name;
    QString tax;
    QString terms;
    double creditLimit = 0;
    QString email;
    QString webSite;
    QString address;
    QString address2;
    QString city;
    qint64 state = 0; ///< ItemID of a state, 0 for none
    QString zip;
    QString phone;
    QString fax;
    QString atten;
    QString licenseNo;
    QString contactName;
    QString notes;
};
