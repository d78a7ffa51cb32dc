#pragma once

#include "DataHelpers.h"

class Session;

/** Choosing parts with a quantity and a price for a service or a work order line. */
class PartPicker
{
public:
    /** A part chosen, as the caller receives it. */
    struct Pick
    {
        QString partId;
        double quantity = 0;
        QVariant price;
        QVariant supplierId; ///< NULL when the part names no supplier
    };

    /** Between the picks of a result text. */
    static const QString RecordSeparator;
    /** Between the fields of a pick. */
    static const QChar FieldSeparator;

    explicit PartPicker(Session& session) : m_session(session) {}

    /**
     * The part numbers of an exclude text: quoted numbers joined by ",", an
     * apostrophe inside a number doubled ("'A-1','O''Brien'").
     */
    static QStringList parseExcludeList(const QString& text);

    /**
     * The parts that may be chosen, by part number: PartID, Description,
     * PartCategory, Quantity, Price, Supplier, Inactive and SupplierID.
     * Inactive parts and those in the exclude text are left out; search keeps
     * the parts whose number or description starts with it.
     */
    Rows list(const QString& excludeText, const QString& search);

    /** The picks as the callers read them: fields and records joined by the separators. */
    static QString resultText(const QList<Pick>& picks);

    /** Deletes the part and its rows among a session's picks; false when it could not. */
    bool deletePart(const QString& partId);

private:
    Session& m_session;
};
