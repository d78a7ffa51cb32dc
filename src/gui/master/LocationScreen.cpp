#include "LocationScreen.h"

#include "FormPlacement.h"
#include "LookupCombo.h"
#include "RecordGrid.h"
#include "ScreenFields.h"

#include <QFormLayout>

namespace {

const QString LocationIdField = QStringLiteral("LocationID");
const QString NameField = QStringLiteral("LocationName");
const QString DescriptionField = QStringLiteral("Description");

} // namespace

LocationScreen::LocationScreen(Session& session, QWidget* parent)
    : NamedRecordScreen(session, QStringLiteral("frmLocation"), QStringLiteral("tblLocation"),
                        LocationIdField, parent),
      m_manager(session)
{
    using namespace ScreenFields;
    setWindowTitle(QStringLiteral("Location"));
    QLineEdit* name = lineEdit(this, "txtLocationName", 50);
    QLineEdit* description = lineEdit(this, "txtDescription", 100);
    QComboBox* site = comboBox(this, "cboSite");
    LookupCombo::loadItemWithId(site, m_manager.sites(), QStringLiteral("SiteID"),
                                QStringLiteral("SiteName"), true);
    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("Location &Name"), name);
    fields->addRow(QStringLiteral("&Description"), description);
    fields->addRow(QStringLiteral("&Site"), site);

    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdLocation"));
    grid->setFields({{LocationIdField, LocationIdField},
                     {NameField, QStringLiteral("Location Name")},
                     {DescriptionField, QStringLiteral("Description")}},
                    LocationIdField);
    setStandardLayout(fields, grid);

    bindField(name, NameField, &m_location.locationName, QStringLiteral("Location Name"),
              FieldBindings::Required);
    bindField(description, DescriptionField, &m_location.description);
    bindField(site, QStringLiteral("Site"), &m_location.site, QStringLiteral("Site Name"),
              FieldBindings::Required);
    // The key is the engine's own number: hidden, and empty while a new location is added.
    QLineEdit* locationId = lineEdit(this, "txtLocationID");
    locationId->hide();
    bindField(locationId, LocationIdField, &m_location.locationId);
    setNameField(name, NameField);
    resize(7335 / FormPlacement::TwipsPerPixel, 4275 / FormPlacement::TwipsPerPixel);
}

QVariant LocationScreen::showLocationDetail(Session& session, Mode mode, const QVariant& id,
                                            QWidget* parent)
{
    LocationScreen screen(session, parent);
    screen.setPendingId(id);
    screen.run(mode);
    return screen.chosenId();
}

Rows LocationScreen::loadRecords()
{
    return m_manager.list();
}

bool LocationScreen::saveRecord(QVariant* id)
{
    if (!m_manager.saveRecord(m_location, mode() == Mode::Add)) {
        return false;
    }
    *id = m_location.locationId;
    return true;
}

QString LocationScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteLocation(id.toLongLong());
}

bool LocationScreen::deleteRecord(const QVariant& id)
{
    return m_manager.deleteRecord(id.toLongLong());
}
