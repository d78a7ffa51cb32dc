#pragma once

#include "NamedRecordScreen.h"
#include "Site.h"
#include "SiteManager.h"

/** The sites: name, address and state, one row a site. */
class SiteScreen : public NamedRecordScreen
{
    Q_OBJECT

public:
    explicit SiteScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Shows the sites as a modal window on the site with id (mode Add starts
     * with a new site) and answers the site shown when it closed.
     */
    static QVariant showSiteDetail(Session& session, Mode mode, const QVariant& id,
                                   QWidget* parent = nullptr);

protected:
    Rows loadRecords() override;
    bool saveRecord(QVariant* id) override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;

private:
    SiteManager m_manager;
    Site m_site;
};
