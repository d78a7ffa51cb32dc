#pragma once

#include "DataHelpers.h"

class QComboBox;

/**
 * Combo boxes filled from a lookup: each item shows a text and carries the
 * id it stands for. The optional blank item (two blanks, id 0) stands for
 * "no value", and a record stores id 0 for it, never NULL.
 */
namespace LookupCombo {

/** The text of the blank item. */
inline const QString BlankText = QStringLiteral("  ");

/** Fills combo with textColumn of each row, carrying idColumn; the blank item first if asked. */
void loadItemWithId(QComboBox* combo, const Rows& rows, const QString& idColumn,
                    const QString& textColumn, bool addBlank);

/** Fills combo with column of each row, for lists whose text is their key. */
void loadItemOnlyId(QComboBox* combo, const Rows& rows, const QString& column, bool addBlank);

/**
 * Selects the item of id (0 or NULL: the blank item, or none). False when a
 * real id has no item: the lookup row is gone, and nothing is selected.
 */
bool selectId(QComboBox* combo, const QVariant& id);
/** Selects the item with text, without regard to case; false when a real text has none. */
bool selectText(QComboBox* combo, const QString& text);

/** The id of the selected item; 0 for the blank item or none. */
qint64 currentId(const QComboBox* combo);
/** The text of the selected item, trimmed; empty for the blank item or none. */
QString currentText(const QComboBox* combo);

} // namespace LookupCombo
