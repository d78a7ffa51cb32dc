#pragma once

#include "LayoutReader.h"
#include "ReportDocument.h"

/** A report of a sound layout's text with rows in the order of its fields. */
inline ReportDocument documentFrom(const QByteArray& layout, QList<QVariantList> rows)
{
    QString error;
    const std::optional<ReportLayout> read =
        LayoutReader::parse(layout, QStringLiteral("rptTest"), &error);
    Q_ASSERT_X(read, "documentFrom", qPrintable(error));
    return ReportDocument(*read, std::move(rows));
}
