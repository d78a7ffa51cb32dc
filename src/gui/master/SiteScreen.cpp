#include "SiteScreen.h"

#include "FormPlacement.h"
#include "IndicatorScreen.h"
#include "LookupCombo.h"
#include "RecordGrid.h"
#include "ScreenFields.h"

#include <QFormLayout>
#include <QHBoxLayout>

namespace {

const QString SiteIdField = QStringLiteral("SiteID");
const QString NameField = QStringLiteral("SiteName");

} // namespace

SiteScreen::SiteScreen(Session& session, QWidget* parent)
    : NamedRecordScreen(session, QStringLiteral("frmSite"), QStringLiteral("tblSite"), SiteIdField,
                        parent),
      m_manager(session)
{
    using namespace ScreenFields;
    setWindowTitle(QStringLiteral("Site"));
    QLineEdit* name = lineEdit(this, "txtSiteName", 50);
    QLineEdit* address = lineEdit(this, "txtAddress", 100);
    QLineEdit* city = lineEdit(this, "txtCity", 50);
    QComboBox* state = comboBox(this, "cboState");
    const auto loadStates = [this, state] {
        LookupCombo::loadItemWithId(state, m_manager.states(), QStringLiteral("ItemID"),
                                    QStringLiteral("ItemName"), true);
    };
    loadStates();
    QLineEdit* zip = lineEdit(this, "txtZip", 20);
    auto* stateRow = new QHBoxLayout;
    stateRow->addWidget(state, 1);
    QPushButton* stateButton = listButton(this, "cmdState");
    stateRow->addWidget(stateButton);
    setListButton(
        stateButton, state,
        [this](qint64 stateId) {
            IndicatorScreen::showIndicatorDetail(this->session(), IndicatorList::State, stateId, {},
                                                 false, this);
        },
        loadStates);
    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("Site &Name"), name);
    fields->addRow(QStringLiteral("&Address"), address);
    fields->addRow(QStringLiteral("&City"), city);
    fields->addRow(QStringLiteral("S&tate"), stateRow);
    fields->addRow(QStringLiteral("&Zip"), zip);

    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdSite"));
    grid->setFields({{SiteIdField, SiteIdField},
                     {NameField, QStringLiteral("Site Name")},
                     {QStringLiteral("Address"), QStringLiteral("Address")},
                     {QStringLiteral("City"), QStringLiteral("City")},
                     {QStringLiteral("Zip"), QStringLiteral("Zip")}},
                    SiteIdField);
    setStandardLayout(fields, grid);

    bindField(name, NameField, &m_site.siteName, QStringLiteral("Site Name"),
              FieldBindings::Required);
    bindField(address, QStringLiteral("Address"), &m_site.address);
    bindField(city, QStringLiteral("City"), &m_site.city);
    bindField(state, QStringLiteral("StateID"), &m_site.stateId);
    bindField(zip, QStringLiteral("Zip"), &m_site.zip);
    // The key travels in a hidden field; empty while a new site is added.
    QLineEdit* siteId = lineEdit(this, "txtSiteID");
    siteId->hide();
    bindField(siteId, SiteIdField, &m_site.siteId);
    setNameField(name, NameField);
    resize(7185 / FormPlacement::TwipsPerPixel, 4830 / FormPlacement::TwipsPerPixel);
}

QVariant SiteScreen::showSiteDetail(Session& session, Mode mode, const QVariant& id,
                                    QWidget* parent)
{
    SiteScreen screen(session, parent);
    screen.setPendingId(id);
    screen.run(mode);
    return screen.chosenId();
}

Rows SiteScreen::loadRecords()
{
    return m_manager.list();
}

bool SiteScreen::saveRecord(QVariant* id)
{
    if (!m_manager.saveRecord(m_site, mode() == Mode::Add)) {
        return false;
    }
    *id = m_site.siteId;
    return true;
}

QString SiteScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteSite(id.toLongLong());
}

bool SiteScreen::deleteRecord(const QVariant& id)
{
    return m_manager.deleteRecord(id.toLongLong());
}
