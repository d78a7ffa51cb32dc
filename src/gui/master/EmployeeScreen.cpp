#include "EmployeeScreen.h"

#include "CrewScreen.h"
#include "DateBox.h"
#include "FormPlacement.h"
#include "IndicatorScreen.h"
#include "LookupCombo.h"
#include "QuickFindScreen.h"
#include "RecordGrid.h"
#include "ScreenFields.h"
#include "Session.h"
#include "SiteScreen.h"

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
    setQuickFind([this] {
        return QuickFindScreen::showQuickFind(this->session(), QStringLiteral("tblEmployee"),
                                              KeyField, QStringLiteral("Employee Number"),
                                              objectName(), {}, this);
    });
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
    QPushButton* countries = ScreenFields::listButton(this, "cmdCountry");
    left->addRow(QStringLiteral("Country"), withButton(m_country, countries));
    m_state = addList("cboState", QStringLiteral("State"), &m_employee.state);
    QPushButton* states = ScreenFields::listButton(this, "cmdState");
    left->addRow(QStringLiteral("State"), withButton(m_state, states));
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
    QPushButton* sites = ScreenFields::listButton(this, "cmdSite");
    right->addRow(QStringLiteral("Site"), withButton(m_site, sites));
    right->addRow(QStringLiteral("Skills"),
                  addLine("txtSkills", QStringLiteral("Skills"), &m_employee.skills));
    m_crew = addList("cboCrew", QStringLiteral("Crew"), &m_employee.crew);
    QPushButton* crews = ScreenFields::listButton(this, "cmdCrew");
    right->addRow(QStringLiteral("Crew"), withButton(m_crew, crews));
    m_position = addList("cboPosition", QStringLiteral("EmpPosition"), &m_employee.position);
    QPushButton* positions = ScreenFields::listButton(this, "cmdPosition");
    right->addRow(QStringLiteral("Position"), withButton(m_position, positions));
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
    wireListButtons(countries, states, sites, crews, positions);
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

void EmployeeScreen::loadLists()
{
    loadIndicators(m_country, IndicatorList::Country);
    loadIndicators(m_position, IndicatorList::EmployeePosition);
    loadSites();
    loadCrews();
    loadStates();
}

void EmployeeScreen::loadIndicators(QComboBox* list, qint64 parent)
{
    LookupCombo::loadItemWithId(list, DataHelpers::indicatorInfo(session(), parent, true, true),
                                QStringLiteral("ItemID"), QStringLiteral("ItemName"), true);
}

void EmployeeScreen::loadStates()
{
    const qint64 country = LookupCombo::currentId(m_country);
    loadIndicators(m_state, country == 0 ? IndicatorList::NoParent : country);
}

void EmployeeScreen::loadSites()
{
    LookupCombo::loadItemWithId(m_site, m_manager.siteInfo(), QStringLiteral("SiteID"),
                                QStringLiteral("SiteName"), true);
}

void EmployeeScreen::loadCrews()
{
    LookupCombo::loadItemWithId(m_crew, m_manager.crewInfo(), QStringLiteral("CrewID"),
                                QStringLiteral("CrewNumber"), true);
}

void EmployeeScreen::wireListButtons(QPushButton* countries, QPushButton* states,
                                     QPushButton* sites, QPushButton* crews, QPushButton* positions)
{
    const auto indicators = [this](qint64 list, QComboBox* parent = nullptr) {
        return [this, list, parent](qint64 chosen) {
            const qint64 parentItem = parent ? LookupCombo::currentId(parent) : 0;
            IndicatorScreen::showIndicatorDetail(session(), int(list), chosen, parentItem, false,
                                                 this);
        };
    };
    setListButton(countries, m_country, indicators(IndicatorList::Country),
                  [this] { loadIndicators(m_country, IndicatorList::Country); });
    setListButton(states, m_state, indicators(IndicatorList::State, m_country),
                  [this] { loadStates(); });
    setListButton(positions, m_position, indicators(IndicatorList::EmployeePosition),
                  [this] { loadIndicators(m_position, IndicatorList::EmployeePosition); });
    setListButton(
        sites, m_site,
        [this](qint64 chosen) {
            SiteScreen::showSiteDetail(session(), Mode::Browse, chosen, this);
        },
        [this] { loadSites(); });
    setListButton(
        crews, m_crew,
        [this](qint64 chosen) {
            CrewScreen::showCrewDetail(session(), Mode::Browse, chosen, this);
        },
        [this] { loadCrews(); });
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
