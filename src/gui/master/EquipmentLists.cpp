// The lists of the equipment screen, their buttons and captions, and the child grids' actions.
#include "CrewScreen.h"
#include "EquipmentImageScreen.h"
#include "EquipmentScreen.h"
#include "Indicator.h"
#include "IndicatorScreen.h"
#include "LocationScreen.h"
#include "LookupCombo.h"
#include "MessageTexts.h"
#include "Options.h"
#include "Prompter.h"
#include "Session.h"
#include "SiteScreen.h"
#include "StateList.h"
#include "SupplierScreen.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QTableWidget>
#include <QUrl>

namespace {

const QString MakeFirst = QStringLiteral("You must first add a new Make before adding a new Model");

struct IndicatorField
{
    const char* list;
    const char* button;
    qint64 number;
};

// The lists filled straight from one lookup list.
const IndicatorField PlainIndicators[] = {
    {"cboType", "cmdType", IndicatorList::EquipmentType},
    {"cboLeaseCompany", "cmdLeaseCompany", IndicatorList::LeaseCompany},
    {"cboEMake", "cmdEMake", IndicatorList::EngineMake},
    {"cboEfuelType", "cmdEfuelType", IndicatorList::FuelType},
    {"cboFuelType", "cmdFuelType", IndicatorList::FuelType},
    {"cboBody", "cmdBody", IndicatorList::VehicleBodyType},
    {"cboChassis", "cmdChassis", IndicatorList::VehicleChassisType},
    {"cboTrans", "cmdTrans", IndicatorList::VehicleTransType},
    {"cboEngineType", "cmdEngineType", IndicatorList::VehicleEngineType},
    {"cboManufacture", "cmdManufacture", IndicatorList::ManufactureType},
};

} // namespace

void EquipmentScreen::loadLists()
{
    for (const IndicatorField& field : PlainIndicators) {
        loadIndicators(m_lists.value(QString::fromLatin1(field.list)), field.number);
    }
    const auto follow = [this](const char* parent, const char* child) {
        QComboBox* up = m_lists.value(QString::fromLatin1(parent));
        QComboBox* down = m_lists.value(QString::fromLatin1(child));
        connect(up, &QComboBox::currentIndexChanged, this,
                [this, up, down] { loadDependent(down, up); });
        loadDependent(down, up);
    };
    follow("cboType", "cboMake");
    follow("cboMake", "cboModel");
    follow("cboEMake", "cboEModel");
    connect(m_lists.value(QStringLiteral("cboSite")), &QComboBox::currentIndexChanged, this,
            &EquipmentScreen::loadLocations);
    loadSites();
    loadCrews();
    loadSuppliers();
    loadStates();
}

void EquipmentScreen::loadIndicators(QComboBox* list, qint64 parent)
{
    const qint64 chosen = LookupCombo::currentId(list);
    LookupCombo::loadItemWithId(list, DataHelpers::indicatorInfo(session(), parent, true, true),
                                QStringLiteral("ItemID"), QStringLiteral("ItemName"), true);
    LookupCombo::selectId(list, chosen);
}

void EquipmentScreen::loadDependent(QComboBox* list, QComboBox* parent)
{
    const qint64 item = LookupCombo::currentId(parent);
    loadIndicators(list, item == 0 ? IndicatorList::NoParent : item);
}

void EquipmentScreen::loadSites()
{
    LookupCombo::loadItemWithId(m_lists.value(QStringLiteral("cboSite")),
                                DataHelpers::tableInfo(session(), QStringLiteral("tblSite"), {},
                                                       QStringLiteral("SiteName")),
                                QStringLiteral("SiteID"), QStringLiteral("SiteName"), true);
    loadLocations();
}

void EquipmentScreen::loadLocations()
{
    const qint64 site = LookupCombo::currentId(m_lists.value(QStringLiteral("cboSite")));
    LookupCombo::loadItemWithId(
        m_lists.value(QStringLiteral("cboLocation")),
        DataHelpers::tableInfo(session(), QStringLiteral("tblLocation"),
                               {QStringLiteral("Site = ?"), {site == 0 ? -1 : site}},
                               QStringLiteral("LocationName")),
        QStringLiteral("LocationID"), QStringLiteral("LocationName"), true);
}

void EquipmentScreen::loadCrews()
{
    LookupCombo::loadItemWithId(m_lists.value(QStringLiteral("cboCrew")),
                                DataHelpers::crewInfo(session()), QStringLiteral("CrewID"),
                                QStringLiteral("CrewNumber"), true);
}

void EquipmentScreen::loadSuppliers()
{
    LookupCombo::loadItemWithId(m_lists.value(QStringLiteral("cboSupplier")),
                                DataHelpers::tableInfo(session(), QStringLiteral("tblSupplier"), {},
                                                       QStringLiteral("Name")),
                                QStringLiteral("SupplierID"), QStringLiteral("Name"), true);
}

void EquipmentScreen::loadStates()
{
    LookupCombo::loadItemWithId(m_lists.value(QStringLiteral("cboStateLicensed")),
                                StateList::allStates(session()), QStringLiteral("ItemID"),
                                QStringLiteral("ItemName"), true);
}

void EquipmentScreen::wireIndicatorButton(const char* name, QComboBox* list, qint64 listNumber,
                                          QComboBox* parent, bool engineMake)
{
    setListButton(
        findChild<QPushButton*>(QString::fromLatin1(name)), list,
        [this, listNumber, parent, engineMake](qint64 chosen) {
            const qint64 parentItem = parent ? LookupCombo::currentId(parent) : 0;
            IndicatorScreen::showIndicatorDetail(session(), int(listNumber), chosen, parentItem,
                                                 engineMake, this);
        },
        [this, list, listNumber, parent] {
            if (parent) {
                loadDependent(list, parent);
            } else {
                loadIndicators(list, listNumber);
            }
        });
}

void EquipmentScreen::wireListButtons()
{
    for (const IndicatorField& field : PlainIndicators) {
        wireIndicatorButton(field.button, m_lists.value(QString::fromLatin1(field.list)),
                            field.number);
    }
    QComboBox* make = m_lists.value(QStringLiteral("cboMake"));
    wireIndicatorButton("cmdMake", make, IndicatorList::Make,
                        m_lists.value(QStringLiteral("cboType")));
    wireIndicatorButton("cmdEModel", m_lists.value(QStringLiteral("cboEModel")),
                        IndicatorList::Model, m_lists.value(QStringLiteral("cboEMake")), true);
    connect(findChild<QPushButton*>(QStringLiteral("cmdModel")), &QPushButton::clicked, this,
            [this, make] {
                QComboBox* model = m_lists.value(QStringLiteral("cboModel"));
                if (LookupCombo::currentId(make) == 0) {
                    session().prompter().inform(MakeFirst);
                    return;
                }
                // The make selector offers the makes of the machine's type.
                const qint64 type =
                    LookupCombo::currentId(m_lists.value(QStringLiteral("cboType")));
                const qint64 chosen = LookupCombo::currentId(model);
                IndicatorScreen::showIndicatorDetail(session(), int(IndicatorList::Model), chosen,
                                                     type, false, this);
                setFieldQuietly([this, model, make, chosen] {
                    loadDependent(model, make);
                    LookupCombo::selectId(model, chosen);
                });
            });
    wireIndicatorButton("cmdStateLicensed", m_lists.value(QStringLiteral("cboStateLicensed")),
                        IndicatorList::State);
    setListButton(
        findChild<QPushButton*>(QStringLiteral("cmdSite")),
        m_lists.value(QStringLiteral("cboSite")),
        [this](qint64 chosen) {
            SiteScreen::showSiteDetail(session(), Mode::Browse, chosen, this);
        },
        [this] { loadSites(); });
    setListButton(
        findChild<QPushButton*>(QStringLiteral("cmdLocation")),
        m_lists.value(QStringLiteral("cboLocation")),
        [this](qint64 chosen) {
            LocationScreen::showLocationDetail(session(), Mode::Browse, chosen, this);
        },
        [this] { loadLocations(); });
    setListButton(
        findChild<QPushButton*>(QStringLiteral("cmdCrew")),
        m_lists.value(QStringLiteral("cboCrew")),
        [this](qint64 chosen) {
            CrewScreen::showCrewDetail(session(), Mode::Browse, chosen, this);
        },
        [this] { loadCrews(); });
    setListButton(
        findChild<QPushButton*>(QStringLiteral("cmdSupplier")),
        m_lists.value(QStringLiteral("cboSupplier")),
        [this](qint64 chosen) {
            SupplierScreen::showSupplierDetail(session(), Mode::Browse, chosen, this);
        },
        [this] { loadSuppliers(); });
}

void EquipmentScreen::relabelLease()
{
    const QStringList captions = EquipmentManager::leaseCaptions(
        int(LookupCombo::currentId(m_lists.value(QStringLiteral("cboOwnedLeased")))));
    for (int i = 0; i < m_leaseLabels.size(); ++i) {
        m_leaseLabels[i]->setText(captions.value(i));
    }
}

void EquipmentScreen::showUserDefinedCaptions()
{
    for (int i = 0; i < m_userDefinedLabels.size(); ++i) {
        const QString option =
            Options::option(session(), QStringLiteral("UserDefinedField%1").arg(i + 1));
        m_userDefinedLabels[i]->setText(
            option.isEmpty() ? QStringLiteral("User Field %1").arg(i + 1) : option);
    }
}

QString EquipmentScreen::selectedName(QTableWidget* grid) const
{
    const QTableWidgetItem* item = grid->item(grid->currentRow(), 0);
    return item ? item->text() : QString();
}

void EquipmentScreen::addParts()
{
    const qint64 id = shownId();
    QString picks = m_partList.excludeText(id);
    if (!partPicker()(&picks, this) || picks.isEmpty() || !beginModify()) {
        return;
    }
    m_partList.addPicked(id, picks);
    showChildren();
}

void EquipmentScreen::removePart()
{
    const QString part = selectedName(m_parts);
    if (part.isEmpty() || !session().prompter().askYesNo(MessageTexts::DeleteQuestion) ||
        !beginModify()) {
        return;
    }
    m_partList.removePart(shownId(), part);
    showChildren();
}

void EquipmentScreen::recalculate()
{
    const char* const fields[] = {"txtPurchaseYear", "txttotalCost", "txtSalvageValue",
                                  "txtAssetYears"};
    const auto textOf = [this](const char* name) {
        return m_lines.value(QString::fromLatin1(name))->text();
    };
    const DepreciationInputs inputs{textOf(fields[0]), textOf(fields[1]), textOf(fields[2]),
                                    textOf(fields[3])};
    if (const auto problem = Depreciation::validate(inputs)) {
        session().prompter().inform(problem->message);
        m_lines.value(QString::fromLatin1(fields[int(problem->field)]))->setFocus();
        return;
    }
    if (beginModify()) {
        m_depreciation.recalculate(shownId(), inputs);
        showChildren();
    }
}

void EquipmentScreen::addPicture()
{
    if (beginModify() &&
        EquipmentImageScreen::showEquipmentImageDetail(session(), shownId(), this)) {
        showChildren();
    }
}

void EquipmentScreen::showPicture()
{
    const QString name = selectedName(m_pictures);
    QPixmap picture;
    if (!name.isEmpty()) {
        picture.loadFromData(m_attachments.pictureData(shownId(), name));
    }
    // A large picture is scaled to the width of its frame; the scroll area takes its height.
    const int width = m_picture->parentWidget()->width();
    m_picture->setPixmap(picture.width() > width && width > 0 ? picture.scaledToWidth(width)
                                                              : picture);
    m_picture->adjustSize();
}

void EquipmentScreen::removePicture()
{
    const QString name = selectedName(m_pictures);
    if (!name.isEmpty() && beginModify() && m_attachments.removePicture(shownId(), name)) {
        showChildren();
    }
}

void EquipmentScreen::addDocument()
{
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("Add Document"));
    if (path.isEmpty() || !beginModify()) {
        return;
    }
    m_attachments.addDocument(shownId(), path);
    showChildren();
}

void EquipmentScreen::removeDocument()
{
    const QString name = selectedName(m_documents);
    if (!name.isEmpty() && beginModify() && m_attachments.removeDocument(shownId(), name)) {
        showChildren();
    }
}

void EquipmentScreen::preview()
{
    const QString name = selectedName(m_documents);
    if (!name.isEmpty()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(m_attachments.documentPath(shownId(), name)));
    }
}
