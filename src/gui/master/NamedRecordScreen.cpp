#include "NamedRecordScreen.h"

#include "Prompter.h"
#include "Session.h"

#include <QLineEdit>

void NamedRecordScreen::setNameField(QLineEdit* field, const QString& column)
{
    m_nameField = field;
    m_nameColumn = column;
}

bool NamedRecordScreen::validateFields()
{
    return mode() != Mode::Modify || confirmRename();
}

bool NamedRecordScreen::confirmRename()
{
    const QSqlRecord stored = currentRecord();
    const QString oldName = DataHelpers::replaceNull(stored.value(m_nameColumn)).toString();
    if (m_nameField->text().trimmed() == oldName.trimmed()) {
        return true;
    }
    const QString user = canDelete(currentId());
    if (user.isEmpty() ||
        session().prompter().askYesNo(QStringLiteral("This will change ") + oldName +
                                      QStringLiteral(" for all your ") + user +
                                      QStringLiteral(". Do you want to do this?"))) {
        return true;
    }
    setFieldQuietly([&] { displayData(stored); });
    m_nameField->setFocus();
    return false;
}
