#include "EmployeeScreen.h"

#include "CrewScreen.h"
#include "DateBox.h"
#include "FormPlacement.h"
#include "LookupCombo.h"
#include "RecordGrid.h"
#include "Session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleValidator>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace {

const QString KeyField = QStringLiteral("EmployeeID");
// The mask whose empty form is EmployeeManager::EmptyPhone: area, exchange, up to twelve more.
const QString PhoneMask = QStringLiteral("(999) 999-999999999999; ");
constexpr qint64 CountryList = 1;
constexpr qint64 PositionList = 3;
constexpr qint64 NoParent = -1; // no item hangs under it: the empty state list

/** A field with the list's button beside it. */
QHBoxLayout* withButton(QWidget* field, QPushButton* button)
{
    auto* row = new QHBoxLayout;
    row->addWidget(field, 1);
    row->addWidget(button);
    return row;
}

} // namespace

EmployeeScreen::EmployeeScreen(Session& session, QWidget* parent)
    : RecordScreen(session, QStringLiteral("frmEmployee"), QStringLiteral("tblEmployee"), KeyField,
                   parent),
      m_manager(session)
{
    setWindowTitle(QStringLiteral("Employee"));
    QLayout* fields = buildFields();
    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdEmployee"));
    grid->setFields({{KeyField, QStringLiteral("Employee Number")},
                     {QStringLiteral("FirstName"), QStringLiteral("First Name")},
                     {QStringLiteral("Lastname"), QStringLiteral("Last Name")},
                     {QStringLiteral("City"), QStringLiteral("City")},
                     {QStringLiteral("Email"), QStringLiteral("Email")}},
                    KeyField);
    // The key is the number the user typed, so the grid shows it.
    grid->setColumnHidden(0, false);
    setStandardLayout(fields, grid);
    setUniqueField(m_id, KeyField, false,
                   QStringLiteral("Employee Number you specified already exists. Please enter a "
                                  "different Employee Number."));
    resize(9900 / FormPlacement::TwipsPerPixel, 6840 / FormPlacement::TwipsPerPixel);
}

QVariant EmployeeScreen::showEmployeeDetail(Session& session, Mode mode, const QVariant& id,
                                            QWidget* parent)
{
    EmployeeScreen screen(session, parent);
    screen.setPendingId(id);
    screen.run(mode);
    return screen.chosenId();
}

QLayout* EmployeeScreen::buildFields()
{
    auto* left = new QFormLayout;
    auto* right = new QFormLayout;
    m_id = addLine("txtEmployeeID", KeyField, &m_employee.employeeId,
                   QStringLiteral("Employee Number"), FieldBindings::Required);
    left->addRow(QStringLiteral("Employee &Number"), m_id);
    left->addRow(QStringLiteral("&First Name"),
                 addLine("txtFirstName", QStringLiteral("FirstName"), &m_employee.firstName,
                         QStringLiteral("Employee's first name"), FieldBindings::Required));
    left->addRow(QStringLiteral("&Last Name"),
                 addLine("txtLastName", QStringLiteral("Lastname"), &m_employee.lastName));
    left->addRow(QStringLiteral("&Initial"),
                 addLine("txtInitialName", QStringLiteral("InitialName"), &m_employee.initialName));
    auto* birth = new DateBox(this);
    birth->setObjectName(QStringLiteral("datBirthDate"));
    bindField(birth, QStringLiteral("BirthDate"), &m_employee.birthDate);
    left->addRow(QStringLiteral("&Birth Date"), birth);
    auto* gender = new QComboBox(this);
    gender->setObjectName(QStringLiteral("cboGender"));
    gender->addItems({LookupCombo::BlankText, QStringLiteral("Male"), QStringLiteral("Female")});
    bindField(gender, QStringLiteral("Gender"), &m_employee.gender);
    left->addRow(QStringLiteral("&Gender"), gender);
    left->addRow(QStringLiteral("&Address"),
                 addLine("txtAddress", QStringLiteral("Address"), &m_employee.address));
    left->addRow(QStringLiteral("&City"),
                 addLine("txtCity", QStringLiteral("City"), &m_employee.city));
    m_country = addList("cboCountry", QStringLiteral("Country"), &m_employee.country);
    left->addRow(QStringLiteral("Country"), withButton(m_country, listButton("cmdCountry")));
    m_state = addList("cboState", QStringLiteral("State"), &m_employee.state);
    left->addRow(QStringLiteral("State"), withButton(m_state, listButton("cmdState")));
    left->addRow(QStringLiteral("&Zip"), addLine("txtZip", QStringLiteral("Zip"), &m_employee.zip));
    left->addRow(QStringLiteral("&Phone"),
                 m_phone = addPhone("txtPhone", QStringLiteral("Phone"), &m_employee.phone));
    right->addRow(QStringLiteral("C&ell Phone"),
                  m_cellPhone =
                      addPhone("txtCellPhone", QStringLiteral("CellPhone"), &m_employee.cellPhone));
    right->addRow(QStringLiteral("E&mail"),
                  addLine("txtEmail", QStringLiteral("Email"), &m_employee.email));
    right->addRow(QStringLiteral("Pa&ger"),
                  addLine("txtPager", QStringLiteral("Pager"), &m_employee.pager));
    right->addRow(QStringLiteral("SS"), addLine("txtSS", QStringLiteral("SS"), &m_employee.ss));
    right->addRow(QStringLiteral("License No"),
                  addLine("txtLicenseNo", QStringLiteral("LicenseNo"), &m_employee.licenseNo));
    m_site = addList("cboSite", QStringLiteral("Site"), &m_employee.site);
    right->addRow(QStringLiteral("Site"), withButton(m_site, listButton("cmdSite")));
    right->addRow(QStringLiteral("Skills"),
                  addLine("txtSkills", QStringLiteral("Skills"), &m_employee.skills));
    m_crew = addList("cboCrew", QStringLiteral("Crew"), &m_employee.crew);
    QPushButton* crews = listButton("cmdCrew");
    right->addRow(QStringLiteral("Crew"), withButton(m_crew, crews));
    m_position = addList("cboPosition", QStringLiteral("EmpPosition"), &m_employee.position);
    right->addRow(QStringLiteral("Position"), withButton(m_position, listButton("cmdPosition")));
    right->addRow(QStringLiteral("Labor Cost"),
                  addMoney("txtLaborCost", QStringLiteral("LaborCost"), &m_employee.laborCost,
                           QStringLiteral("Labor Cost")));
    right->addRow(QStringLiteral("Labor Rate"),
                  addMoney("txtLaborRate", QStringLiteral("LaborRate"), &m_employee.laborRate,
                           QStringLiteral("Labor Rate")));
    for (auto [name, column, member, caption] :
         {std::tuple("chkInactive", "Inactive", &m_employee.inactive, "Inactive"),
          std::tuple("chkIncludeWoList", "IncludeWoList", &m_employee.includeWoList,
                     "Include in Work Order List")}) {
        auto* box = new QCheckBox(QString::fromLatin1(caption), this);
        box->setObjectName(QString::fromLatin1(name));
        bindField(box, QString::fromLatin1(column), member);
        right->addRow(QString(), box);
    }
    // Site and the lookup lists keep their buttons disabled until their screens are wired.
    crews->setEnabled(true);
    connect(crews, &QPushButton::clicked, this, &EmployeeScreen::openCrews);
    connect(m_country, &QComboBox::currentIndexChanged, this, &EmployeeScreen::loadStates);
    loadLists();
    auto* columns = new QHBoxLayout;
    columns->addLayout(left);
    columns->addLayout(right);
    return columns;
}

QLineEdit* EmployeeScreen::addLine(const char* name, const QString& column, QString* member,
                                   const QString& caption, int checks)
{
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString::fromLatin1(name));
    bindField(edit, column, member, caption, checks);
    return edit;
}

QComboBox* EmployeeScreen::addList(const char* name, const QString& column, qint64* member)
{
    auto* combo = new QComboBox(this);
    combo->setObjectName(QString::fromLatin1(name));
    bindField(combo, column, member);
    return combo;
}

QLineEdit* EmployeeScreen::addMoney(const char* name, const QString& column, double* member,
                                    const QString& caption)
{
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString::fromLatin1(name));
    auto* money = new QDoubleValidator(0, 1e9, 2, edit);
    money->setNotation(QDoubleValidator::StandardNotation);
    money->setLocale(QLocale::c());
    edit->setValidator(money);
    bindField(edit, column, member, caption, FieldBindings::Money);
    return edit;
}

QLineEdit* EmployeeScreen::addPhone(const char* name, const QString& column, QString* member)
{
    QLineEdit* edit = addLine(name, column, member);
    edit->setInputMask(PhoneMask);
    return edit;
}

QPushButton* EmployeeScreen::listButton(const char* name)
{
    auto* button = new QPushButton(QStringLiteral("..."), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setEnabled(false);
    return button;
}

void EmployeeScreen::loadLists()
{
    Session& s = session();
    const QString id = QStringLiteral("ItemID");
    const QString name = QStringLiteral("ItemName");
    LookupCombo::loadItemWithId(m_country, DataHelpers::indicatorInfo(s, CountryList, true, true),
                                id, name, true);
    LookupCombo::loadItemWithId(m_position, DataHelpers::indicatorInfo(s, PositionList, true, true),
                                id, name, true);
    LookupCombo::loadItemWithId(m_site, m_manager.siteInfo(), QStringLiteral("SiteID"),
                                QStringLiteral("SiteName"), true);
    LookupCombo::loadItemWithId(m_crew, m_manager.crewInfo(), QStringLiteral("CrewID"),
                                QStringLiteral("CrewNumber"), true);
    loadStates();
}

void EmployeeScreen::loadStates()
{
    const qint64 country = LookupCombo::currentId(m_country);
    LookupCombo::loadItemWithId(
        m_state,
        DataHelpers::indicatorInfo(session(), country == 0 ? NoParent : country, true, true),
        QStringLiteral("ItemID"), QStringLiteral("ItemName"), true);
}

void EmployeeScreen::openCrews()
{
    const qint64 chosen = LookupCombo::currentId(m_crew);
    CrewScreen::showCrewDetail(session(), Mode::Browse, chosen, this);
    setFieldQuietly([&] {
        LookupCombo::loadItemWithId(m_crew, m_manager.crewInfo(), QStringLiteral("CrewID"),
                                    QStringLiteral("CrewNumber"), true);
        LookupCombo::selectId(m_crew, chosen);
    });
}

Rows EmployeeScreen::loadRecords()
{
    return m_manager.list();
}

void EmployeeScreen::setObjectValues()
{
    RecordScreen::setObjectValues();
    // The mask's own characters too, so that the manager knows an untouched phone.
    m_employee.phone = m_phone->displayText();
    m_employee.cellPhone = m_cellPhone->displayText();
    m_employee.employeeOldId =
        mode() == Mode::Add ? QString() : currentRecord().value(KeyField).toString();
}

bool EmployeeScreen::saveRecord(QVariant* id)
{
    if (!m_manager.saveRecord(m_employee, mode() == Mode::Add)) {
        return false;
    }
    *id = m_employee.employeeId;
    return true;
}

QString EmployeeScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteEmployee(id.toString());
}

bool EmployeeScreen::deleteRecord(const QVariant& id)
{
    return m_manager.deleteRecord(id.toString());
}
