// The thirteen sections of the equipment screen and their fields.
#include "DateBox.h"
#include "EquipmentScreen.h"
#include "Indicator.h"
#include "ScreenFields.h"

#include <QCheckBox>
#include <QDoubleValidator>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

struct Section
{
    const char* caption;
    char key;
};

const Section Sections[] = {
    {"Equipment (Ctrl+E)", 'E'},    {"Service (Ctrl+S)", 'S'},  {"History (Ctrl+H)", 'H'},
    {"Notes (Ctrl+N)", 'N'},        {"Fields (Ctrl+F)", 'F'},   {"Engine (Ctrl+G)", 'G'},
    {"Vehicle (Ctrl+V)", 'V'},      {"Parts (Ctrl+P)", 'P'},    {"Purchase (Ctrl+B)", 'B'},
    {"Counts (Ctrl+C)", 'C'},       {"Pictures (Ctrl+I)", 'I'}, {"Documents (Ctrl+O)", 'O'},
    {"Depreciation (Ctrl+D)", 'D'},
};

const QStringList Periods = {QStringLiteral("Hours"),  QStringLiteral("Miles"),
                             QStringLiteral("Days"),   QStringLiteral("Weeks"),
                             QStringLiteral("Months"), QStringLiteral("Years")};

QFormLayout* formOf(QWidget* page)
{
    return qobject_cast<QFormLayout*>(page->layout());
}

} // namespace

QWidget* EquipmentScreen::buildToolBox()
{
    auto* box = new QWidget(this);
    box->setObjectName(QStringLiteral("cmdToolBox"));
    auto* column = new QVBoxLayout(box);
    for (int i = 0; i < int(std::size(Sections)); ++i) {
        auto* button = new QPushButton(QString::fromLatin1(Sections[i].caption), box);
        button->setObjectName(QStringLiteral("cmdToolBox_%1").arg(i));
        button->setCheckable(true);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, [this, i] { onSectionClicked(i); });
        auto* key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(Sections[i].key)), this);
        connect(key, &QShortcut::activated, this, [this, i] { onSectionClicked(i); });
        column->addWidget(button);
        m_toolButtons.append(button);
    }
    column->addStretch();
    m_toolButtons.first()->setChecked(true);
    return box;
}

QWidget* EquipmentScreen::buildSections()
{
    m_sections = new QStackedWidget(this);
    m_sections->setObjectName(QStringLiteral("FrameVisible"));
    const std::function<QWidget*()> builders[] = {
        [this] { return equipmentSection(); },    [this] { return serviceSection(); },
        [this] { return historySection(); },      [this] { return notesSection(); },
        [this] { return userDefinedSection(); },  [this] { return engineSection(); },
        [this] { return vehicleSection(); },      [this] { return partsSection(); },
        [this] { return purchaseSection(); },     [this] { return countsSection(); },
        [this] { return picturesSection(); },     [this] { return documentsSection(); },
        [this] { return depreciationSection(); },
    };
    for (m_building = 0; m_building < int(std::size(builders)); ++m_building) {
        m_sections->addWidget(builders[m_building]());
    }
    // A section brought to the front from outside the toolbox presses its button too.
    connect(m_sections, &QStackedWidget::currentChanged, this, &EquipmentScreen::pressToolButton);
    return m_sections;
}

QWidget* EquipmentScreen::page(const char* frame)
{
    auto* widget = new QWidget(this);
    widget->setObjectName(QString::fromLatin1(frame));
    new QFormLayout(widget);
    return widget;
}

QWidget* EquipmentScreen::equipmentSection()
{
    QWidget* p = page("fraEquipment");
    QFormLayout* f = formOf(p);
    // The unit number is bound first: a new record starts there.
    f->addRow(QStringLiteral("Unit No"),
              line("txtUnitNo", QStringLiteral("UnitNo"), &m_equipment.unitNo));
    f->addRow(QStringLiteral("Name"),
              line("txtName", QStringLiteral("EquipmentName"), &m_equipment.equipmentName));
    auto* id = number("txtEquipmentID", QStringLiteral("EquipmentID"), &m_equipment.equipmentId);
    id->setReadOnly(true);
    f->insertRow(0, QStringLiteral("Equipment ID"), id);
    f->addRow(QStringLiteral("Type"), withButton(list("cboType", QStringLiteral("EquipmentType"),
                                                      &m_equipment.equipmentType),
                                                 "cmdType"));
    f->addRow(QStringLiteral("Make"), withButton(list("cboMake", QStringLiteral("EquipmentMake"),
                                                      &m_equipment.equipmentMake),
                                                 "cmdMake"));
    f->addRow(QStringLiteral("Model"), withButton(list("cboModel", QStringLiteral("EquipmentModel"),
                                                       &m_equipment.equipmentModel),
                                                  "cmdModel"));
    f->addRow(QStringLiteral("Capacity"),
              line("txtCapacity", QStringLiteral("Capacity"), &m_equipment.capacity));
    auto* year = ScreenFields::comboBox(this, "cboYear");
    year->addItem(QString());
    for (int y = QDate::currentDate().year() + 1; y >= 1950; --y) {
        year->addItem(QString::number(y));
    }
    bindField(year, QStringLiteral("EquipmentYear"), &m_equipment.equipmentYear);
    m_sectionFields[m_building].append(year);
    f->addRow(QStringLiteral("Year"), year);
    f->addRow(QStringLiteral("Serial No"), line("txtSerialNo", QStringLiteral("EquipmentSerialNo"),
                                                &m_equipment.equipmentSerialNo));
    f->addRow(
        QStringLiteral("Installed Date"),
        date("datInstalledDate", QStringLiteral("InstalledDate"), &m_equipment.installedDate));
    f->addRow(QStringLiteral("Attached To"),
              line("txtAttachedTo", QStringLiteral("AttachedTo"), &m_equipment.attachedTo));
    f->addRow(
        QStringLiteral("Site"),
        withButton(list("cboSite", QStringLiteral("SiteID"), &m_equipment.siteId), "cmdSite"));
    f->addRow(QStringLiteral("Location"),
              withButton(list("cboLocation", QStringLiteral("LocationID"), &m_equipment.locationId),
                         "cmdLocation"));
    f->addRow(
        QStringLiteral("Assigned to"),
        withButton(list("cboCrew", QStringLiteral("CrewID"), &m_equipment.crewId), "cmdCrew"));
    f->addRow(QStringLiteral("Bar Code"),
              line("txtBarCode", QStringLiteral("Bar_Code"), &m_equipment.barCode));
    auto* inactive = new QCheckBox(QStringLiteral("Inactive"), this);
    inactive->setObjectName(QStringLiteral("chkInactive"));
    bindField(inactive, QStringLiteral("Inactive"), &m_equipment.inactive);
    f->addRow(QString(), inactive);
    f->addRow(QStringLiteral("Owned/Leased"),
              codes("cboOwnedLeased", QStringLiteral("LeaseOwnedLeased"),
                    &m_equipment.leaseOwnedLeased,
                    {QStringLiteral("Owned"), QStringLiteral("Leased"), QStringLiteral("Loan")}));
    f->addRow(label("lblLeaseCompany", {}),
              withButton(list("cboLeaseCompany", QStringLiteral("LeaseCompany"),
                              &m_equipment.leaseCompany),
                         "cmdLeaseCompany"));
    auto* period = new QHBoxLayout;
    period->addWidget(
        number("txtLeaseInterval", QStringLiteral("LeaseInterval"), &m_equipment.leaseInterval));
    period->addWidget(
        codes("cboLeasePeriod", QStringLiteral("LeasePeriod"), &m_equipment.leasePeriod, Periods));
    f->addRow(label("lblLeaseInterval", {}), period);
    f->addRow(
        label("lblLeaseStartDate", {}),
        date("datLeaseStartDate", QStringLiteral("LeaseStartDate"), &m_equipment.leaseStartDate));
    f->addRow(label("lblLeaseEndDate", {}),
              date("datLeaseEndDate", QStringLiteral("LeaseEndDate"), &m_equipment.leaseEndDate));
    f->addRow(label("lblLeasePayment", {}),
              number("txtLeasePayment", QStringLiteral("LeasePayment"), &m_equipment.leasePayment,
                     FieldBindings::Money));
    m_leaseLabels = {findChild<QLabel*>(QStringLiteral("lblLeaseCompany")),
                     findChild<QLabel*>(QStringLiteral("lblLeaseInterval")),
                     findChild<QLabel*>(QStringLiteral("lblLeaseStartDate")),
                     findChild<QLabel*>(QStringLiteral("lblLeaseEndDate")),
                     findChild<QLabel*>(QStringLiteral("lblLeasePayment"))};
    f->addRow(QStringLiteral("Warranty Start Date"),
              date("datWarrantyStartDate", QStringLiteral("WarrantyStartDate"),
                   &m_equipment.warrantyStartDate));
    f->addRow(QStringLiteral("Warranty End Date"),
              date("datWarrantyEnddate", QStringLiteral("WarrantyEndDate"),
                   &m_equipment.warrantyEndDate));
    auto* warranty = new QHBoxLayout;
    warranty->addWidget(number("txtWarrantyInterval", QStringLiteral("WarrantyInterval"),
                               &m_equipment.warrantyInterval));
    warranty->addWidget(codes("cboWarrantyPeriod", QStringLiteral("WarrantyPeriod"),
                              &m_equipment.warrantyPeriod, Periods));
    f->addRow(QStringLiteral("Warranty is for"), warranty);
    return p;
}

QWidget* EquipmentScreen::notesSection()
{
    QWidget* p = page("fraNotes");
    auto* notes = new QPlainTextEdit(this);
    notes->setObjectName(QStringLiteral("rtfNotes"));
    bindField(notes, QStringLiteral("Notes"), &m_equipment.notes);
    m_sectionFields[m_building].append(notes);
    formOf(p)->addRow(notes);
    return p;
}

QWidget* EquipmentScreen::userDefinedSection()
{
    QWidget* p = page("fraUserDefined");
    for (int i = 0; i < int(m_equipment.userDefined.size()); ++i) {
        const QByteArray name = "txtUserDefined" + QByteArray::number(i + 1);
        QLabel* caption = label(("lblUserDefined" + QByteArray::number(i + 1)).constData(), {});
        m_userDefinedLabels.append(caption);
        formOf(p)->addRow(caption,
                          line(name.constData(), QStringLiteral("UserDefined%1").arg(i + 1),
                               &m_equipment.userDefined[std::size_t(i)]));
    }
    return p;
}

QWidget* EquipmentScreen::engineSection()
{
    QWidget* p = page("fraEngineInfo");
    QFormLayout* f = formOf(p);
    f->addRow(QStringLiteral("Engine Size"),
              line("txtEngineSize", QStringLiteral("EngineSize"), &m_equipment.engineSize));
    f->addRow(QStringLiteral("Engine Make"),
              withButton(list("cboEMake", QStringLiteral("EngineMake"), &m_equipment.engineMake),
                         "cmdEMake"));
    f->addRow(QStringLiteral("Engine Model"),
              withButton(list("cboEModel", QStringLiteral("EngineModel"), &m_equipment.engineModel),
                         "cmdEModel"));
    f->addRow(QStringLiteral("Engine Serial No"),
              line("txtESerialNo", QStringLiteral("EngineSerialNo"), &m_equipment.engineSerialNo));
    auto* cycle = ScreenFields::comboBox(this, "CboCycle");
    cycle->addItems({QString(), QStringLiteral("2"), QStringLiteral("4")});
    bindField(cycle, QStringLiteral("Cycle"), &m_equipment.cycle);
    m_sectionFields[m_building].append(cycle);
    f->addRow(QStringLiteral("Cycle"), cycle);
    f->addRow(QStringLiteral("Fuel Type"),
              withButton(list("cboEfuelType", QStringLiteral("EngineFuelType"),
                              &m_equipment.engineFuelType),
                         "cmdEfuelType"));
    return p;
}

QWidget* EquipmentScreen::vehicleSection()
{
    QWidget* p = page("fraVehicleInfo");
    QFormLayout* f = formOf(p);
    f->addRow(QStringLiteral("Begining Mileage"),
              number("txtBeginingHub", QStringLiteral("BeginingHub"), &m_equipment.beginingHub));
    f->addRow(QStringLiteral("State Licensed"),
              withButton(list("cboStateLicensed", QStringLiteral("StateLicensed"),
                              &m_equipment.stateLicensed),
                         "cmdStateLicensed"));
    f->addRow(QStringLiteral("License No"),
              line("txtLicenseNo", QStringLiteral("LicenseNo"), &m_equipment.licenseNo));
    f->addRow(QStringLiteral("Sticker No"),
              line("txtStickerNo", QStringLiteral("StickerNumber"), &m_equipment.stickerNo));
    f->addRow(QStringLiteral("License Renewal Date"),
              date("datLicenseRenewalDate", QStringLiteral("LicenseRenewalDate"),
                   &m_equipment.licenseRenewalDate));
    f->addRow(QStringLiteral("Permanent License"),
              codes("cboPermanentLicense", QStringLiteral("PermanentLicense"),
                    &m_equipment.permanentLicense, {QStringLiteral("Yes"), QStringLiteral("No")}));
    f->addRow(
        QStringLiteral("Inspection Date"),
        date("datInspectionDate", QStringLiteral("InspectionDate"), &m_equipment.inspectionDate));
    f->addRow(QStringLiteral("Fuel Type"),
              withButton(list("cboFuelType", QStringLiteral("VehicleFuelType"),
                              &m_equipment.vehicleFuelType),
                         "cmdFuelType"));
    f->addRow(QStringLiteral("Front Tires"),
              line("txtTires", QStringLiteral("Tyre"), &m_equipment.tyre));
    f->addRow(QStringLiteral("Rear Tires"),
              line("txtRearTires", QStringLiteral("Rear_Tires"), &m_equipment.rearTires));
    f->addRow(QStringLiteral("Weight"),
              line("txtWeight", QStringLiteral("Weight"), &m_equipment.weight));
    f->addRow(QStringLiteral("VIN"), line("txtVin", QStringLiteral("Vin"), &m_equipment.vin));
    for (auto [caption, name, column, member, button] :
         {std::tuple("Body", "cboBody", "Body", &m_equipment.body, "cmdBody"),
          std::tuple("Chassis", "cboChassis", "Chassis", &m_equipment.chassis, "cmdChassis"),
          std::tuple("Transmission", "cboTrans", "Trans", &m_equipment.trans, "cmdTrans"),
          std::tuple("Engine Type", "cboEngineType", "VehicleEngineType",
                     &m_equipment.vehicleEngineType, "cmdEngineType")}) {
        f->addRow(QString::fromLatin1(caption),
                  withButton(list(name, QString::fromLatin1(column), member), button));
    }
    f->addRow(QStringLiteral("Engine No"),
              line("txtEngineNo", QStringLiteral("VehicleEngineNo"), &m_equipment.vehicleEngineNo));
    f->addRow(QStringLiteral("Color"),
              line("txtColor", QStringLiteral("VehicleColor"), &m_equipment.vehicleColor));
    f->addRow(QStringLiteral("Engine Size"),
              line("txtEngineModel", QStringLiteral("VehicleEngineModel"),
                   &m_equipment.vehicleEngineModel));
    return p;
}

QWidget* EquipmentScreen::purchaseSection()
{
    QWidget* p = page("fraPurchase");
    QFormLayout* f = formOf(p);
    f->addRow(QStringLiteral("Supplier"),
              withButton(list("cboSupplier", QStringLiteral("SupplierID"), &m_equipment.supplierId),
                         "cmdSupplier"));
    f->addRow(
        QStringLiteral("Supplier Part No"),
        line("txtSupplierpartNo", QStringLiteral("SupplierPartNo"), &m_equipment.supplierPartNo));
    f->addRow(QStringLiteral("Manufacturer"),
              withButton(list("cboManufacture", QStringLiteral("ManufactureID"),
                              &m_equipment.manufactureId),
                         "cmdManufacture"));
    f->addRow(QStringLiteral("Manufacturer Part No"),
              line("txtManufacturePartNo", QStringLiteral("ManufacturePartNo"),
                   &m_equipment.manufacturePartNo));
    f->addRow(QStringLiteral("Acquisition Date"),
              date("datAcquisitionDate", QStringLiteral("AcquisitionDate"),
                   &m_equipment.acquisitionDate));
    f->addRow(QStringLiteral("Acquisition Cost"),
              number("txtAcquisitionCost", QStringLiteral("AcquisitionCost"),
                     &m_equipment.acquisitionCost, FieldBindings::Money));
    f->addRow(QStringLiteral("Additional Cost"),
              number("txtAdditionalCost", QStringLiteral("AdditionalCost"),
                     &m_equipment.additionalCost, FieldBindings::Money));
    f->addRow(
        QStringLiteral("Purchase Notes"),
        line("txtPurchaseNotes", QStringLiteral("PurchaseNotes"), &m_equipment.purchaseNotes));
    return p;
}

QWidget* EquipmentScreen::partsSection()
{
    QWidget* p = page("fraPartUsed");
    m_parts = table("grdPart", {QStringLiteral("Part Number"), QStringLiteral("Description"),
                                QStringLiteral("Qty Req"), QStringLiteral("Extended Cost")});
    formOf(p)->addRow(m_parts);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(button("cmdAddNewPart", QStringLiteral("Add Part")));
    buttons->addWidget(button("cmdRemovePart", QStringLiteral("Remove Part")));
    formOf(p)->addRow(buttons);
    return p;
}

QWidget* EquipmentScreen::depreciationSection()
{
    QWidget* p = page("fraDepreciation");
    QFormLayout* f = formOf(p);
    f->addRow(new QLabel(QStringLiteral("Straight-line Depreciation/Projected Life"), this));
    auto* year = ScreenFields::lineEdit(this, "txtPurchaseYear");
    year->setReadOnly(true);
    m_lines.insert(QStringLiteral("txtPurchaseYear"), year);
    auto* yearRow = new QHBoxLayout;
    yearRow->addWidget(year);
    yearRow->addWidget(new QLabel(QStringLiteral("(from Purchase icon)"), this));
    f->addRow(QStringLiteral("Acquisition Year:"), yearRow);
    f->addRow(QStringLiteral("Total Cost:"), number("txttotalCost", QStringLiteral("TotalCost"),
                                                    &m_equipment.totalCost, FieldBindings::Money));
    f->addRow(QStringLiteral("Salvage Value:"),
              number("txtSalvageValue", QStringLiteral("SalvageValue"), &m_equipment.salvageValue,
                     FieldBindings::Money));
    f->addRow(QStringLiteral("Life of asset ( in years):"),
              number("txtAssetYears", QStringLiteral("LifeYears"), &m_equipment.lifeYear));
    f->addRow(button("cmdRecalculate", QStringLiteral("Re&calculate")));
    m_depreciationRows =
        table("grdDepreciation",
              {QStringLiteral("End of Year"), QStringLiteral("Annual Depreciation"),
               QStringLiteral("Accumualted Depreciation"), QStringLiteral("Book Value")});
    f->addRow(m_depreciationRows);
    return p;
}

QWidget* EquipmentScreen::picturesSection()
{
    QWidget* p = page("fraImages");
    m_pictures = table("grdImages", {QStringLiteral("Picture Name")});
    formOf(p)->addRow(m_pictures);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(button("cmdAddImage", QStringLiteral("Add Picture")));
    buttons->addWidget(button("cmdRemoveImage", QStringLiteral("Remove Picture")));
    formOf(p)->addRow(buttons);
    m_picture = new QLabel(p);
    m_picture->setObjectName(QStringLiteral("picImage"));
    auto* scroller = new QScrollArea(p);
    scroller->setObjectName(QStringLiteral("ScrollerImage"));
    scroller->setWidget(m_picture);
    scroller->setAlignment(Qt::AlignCenter);
    formOf(p)->addRow(scroller);
    connect(m_pictures, &QTableWidget::currentCellChanged, this, &EquipmentScreen::showPicture);
    return p;
}

QWidget* EquipmentScreen::documentsSection()
{
    QWidget* p = page("fraDocuments");
    m_documents = table("grdDocuments", {QStringLiteral("Document Name")});
    formOf(p)->addRow(m_documents);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(button("cmdAddDocument", QStringLiteral("Add Document")));
    buttons->addWidget(button("cmdRemoveDocument", QStringLiteral("Remove Document")));
    buttons->addWidget(button("cmdPreview", QStringLiteral("&Open")));
    formOf(p)->addRow(buttons);
    return p;
}

QLineEdit* EquipmentScreen::line(const char* name, const QString& column, QString* member)
{
    QLineEdit* edit = ScreenFields::lineEdit(this, name);
    bindField(edit, column, member);
    m_sectionFields[m_building].append(edit);
    m_lines.insert(QString::fromLatin1(name), edit);
    return edit;
}

QLineEdit* EquipmentScreen::number(const char* name, const QString& column,
                                   FieldBindings::Member member, int checks)
{
    QLineEdit* edit = ScreenFields::lineEdit(this, name);
    auto* numeric = new QDoubleValidator(0, 1e12, 2, edit);
    numeric->setNotation(QDoubleValidator::StandardNotation);
    numeric->setLocale(QLocale::c());
    edit->setValidator(numeric);
    bindField(edit, column, member, QString(), checks);
    m_sectionFields[m_building].append(edit);
    m_lines.insert(QString::fromLatin1(name), edit);
    return edit;
}

QComboBox* EquipmentScreen::list(const char* name, const QString& column, qint64* member)
{
    QComboBox* combo = ScreenFields::comboBox(this, name);
    bindField(combo, column, member);
    m_sectionFields[m_building].append(combo);
    m_lists.insert(QString::fromLatin1(name), combo);
    return combo;
}

QComboBox* EquipmentScreen::codes(const char* name, const QString& column, int* member,
                                  const QStringList& texts)
{
    QComboBox* combo = ScreenFields::comboBox(this, name);
    combo->addItem(QStringLiteral("  "), qint64(0));
    for (int i = 0; i < texts.size(); ++i) {
        combo->addItem(texts[i], qint64(i + 1));
    }
    bindField(combo, column, member);
    m_sectionFields[m_building].append(combo);
    m_lists.insert(QString::fromLatin1(name), combo);
    return combo;
}

QWidget* EquipmentScreen::date(const char* name, const QString& column, QDate* member)
{
    auto* box = new DateBox(this);
    box->setObjectName(QString::fromLatin1(name));
    bindField(box, column, member);
    m_sectionFields[m_building].append(box);
    return box;
}

QWidget* EquipmentScreen::withButton(QWidget* field, const char* name)
{
    auto* holder = new QWidget(this);
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(field, 1);
    row->addWidget(ScreenFields::listButton(this, name));
    return holder;
}

QLabel* EquipmentScreen::label(const char* name, const QString& text)
{
    auto* caption = new QLabel(text, this);
    caption->setObjectName(QString::fromLatin1(name));
    return caption;
}

QTableWidget* EquipmentScreen::table(const char* name, const QStringList& captions)
{
    auto* grid = new QTableWidget(0, int(captions.size()), this);
    grid->setObjectName(QString::fromLatin1(name));
    grid->setHorizontalHeaderLabels(captions);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->horizontalHeader()->setStretchLastSection(true);
    m_sectionFields[m_building].append(grid);
    return grid;
}

QPushButton* EquipmentScreen::button(const char* name, const QString& caption)
{
    auto* b = new QPushButton(caption, this);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}
