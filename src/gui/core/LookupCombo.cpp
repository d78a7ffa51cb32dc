#include "LookupCombo.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <QSqlRecord>

namespace LookupCombo {

namespace {

void fill(QComboBox* combo, const Rows& rows, const QString& idColumn, const QString& textColumn,
          bool addBlank)
{
    const QSignalBlocker quiet(combo);
    combo->clear();
    if (addBlank) {
        combo->addItem(BlankText, qint64(0));
    }
    for (const QSqlRecord& row : rows) {
        const QString text = DataHelpers::replaceNull(row.value(textColumn)).toString();
        combo->addItem(text, idColumn.isEmpty() ? QVariant() : row.value(idColumn));
    }
    combo->setCurrentIndex(combo->count() > 0 ? 0 : -1);
}

bool isNone(const QVariant& id)
{
    return id.isNull() || id.toLongLong() == 0;
}

} // namespace

void loadItemWithId(QComboBox* combo, const Rows& rows, const QString& idColumn,
                    const QString& textColumn, bool addBlank)
{
    fill(combo, rows, idColumn, textColumn, addBlank);
}

void loadItemOnlyId(QComboBox* combo, const Rows& rows, const QString& column, bool addBlank)
{
    fill(combo, rows, QString(), column, addBlank);
}

bool selectId(QComboBox* combo, const QVariant& id)
{
    if (isNone(id)) {
        combo->setCurrentIndex(combo->findData(qint64(0)));
        return true;
    }
    const qint64 wanted = id.toLongLong();
    for (int i = 0; i < combo->count(); ++i) {
        const QVariant data = combo->itemData(i);
        if (!data.isNull() && data.toLongLong() == wanted) {
            combo->setCurrentIndex(i);
            return true;
        }
    }
    combo->setCurrentIndex(-1);
    return false;
}

bool selectText(QComboBox* combo, const QString& text)
{
    const QString wanted = text.trimmed();
    if (wanted.isEmpty()) {
        combo->setCurrentIndex(combo->findText(BlankText));
        return true;
    }
    const int index = combo->findText(wanted, Qt::MatchFixedString);
    combo->setCurrentIndex(index);
    return index >= 0;
}

qint64 currentId(const QComboBox* combo)
{
    return combo->currentIndex() < 0 ? 0 : combo->currentData().toLongLong();
}

QString currentText(const QComboBox* combo)
{
    return combo->currentIndex() < 0 ? QString() : combo->currentText().trimmed();
}

} // namespace LookupCombo
