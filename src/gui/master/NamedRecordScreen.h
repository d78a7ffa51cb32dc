#pragma once

#include "RecordScreen.h"

class QLineEdit;

/**
 * A record screen whose records other records show by name. Lookups hold
 * the key, so renaming a record in use renames it for every user at once:
 * before such a save the user is asked, and No puts the old name back.
 */
class NamedRecordScreen : public RecordScreen
{
    Q_OBJECT

protected:
    using RecordScreen::RecordScreen;

    /** The field that holds the record's name, and its column in the rows. */
    void setNameField(QLineEdit* field, const QString& column);

    /** The rename question, in an edit of a record, after the required fields. */
    bool validateFields() override;

private:
    bool confirmRename();

    QLineEdit* m_nameField = nullptr;
    QString m_nameColumn;
};
