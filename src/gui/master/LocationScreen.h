#pragma once

#include "Location.h"
#include "LocationManager.h"
#include "NamedRecordScreen.h"

/** The locations: name, description and the site they lie in, one row a location. */
class LocationScreen : public NamedRecordScreen
{
    Q_OBJECT

public:
    explicit LocationScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Shows the locations as a modal window on the location with id (mode
     * Add starts with a new one) and answers the location shown when it closed.
     */
    static QVariant showLocationDetail(Session& session, Mode mode, const QVariant& id,
                                       QWidget* parent = nullptr);

protected:
    Rows loadRecords() override;
    bool saveRecord(QVariant* id) override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;

private:
    LocationManager m_manager;
    Location m_location;
};
