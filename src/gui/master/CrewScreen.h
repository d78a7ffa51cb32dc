#pragma once

#include "Crew.h"
#include "CrewManager.h"
#include "RecordScreen.h"

class QLineEdit;

/** The crews: number and description, one row a crew. */
class CrewScreen : public RecordScreen
{
    Q_OBJECT

public:
    explicit CrewScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Shows the crews as a modal window, on the crew with id, and answers
     * the crew shown when it closed. The add that mode Add asks for runs
     * only after the window has closed, as this screen has always done.
     */
    static QVariant showCrewDetail(Session& session, Mode mode, const QVariant& id,
                                   QWidget* parent = nullptr);

protected:
    Rows loadRecords() override;
    bool validateFields() override;
    bool saveRecord(QVariant* id) override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;

private:
    bool confirmRename();

    CrewManager m_manager;
    Crew m_crew;
    QLineEdit* m_number = nullptr;
    QLineEdit* m_description = nullptr;
};
