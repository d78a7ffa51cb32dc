#include "ServicesScreen.h"

#include "CountReadingScreen.h"
#include "DateBox.h"
#include "ErrorReport.h"
#include "FieldExit.h"
#include "LabourCost.h"
#include "LookupCombo.h"
#include "MessageTexts.h"
#include "NextDateCalculator.h"
#include "PartManagerScreen.h"
#include "Prompter.h"
#include "RecordGrid.h"
#include "ScheduleCodes.h"
#include "ServiceMessages.h"
#include "Session.h"
#include "SqlValue.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableWidget>

namespace {

// The widest count the next-count field takes.
constexpr int MaxCount = 999999999;

const char* const DayNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const char* const WeekNames[] = {"First", "Second", "Third", "Forth", "Last"};
const char* const WeekColumns[] = {"FirstW", "SecondW", "ThirdW", "ForthW", "LastW"};
const char* const MonthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const char* const RenewalCodes[] = {"W", "S", "D"};
const QString SelectAll = QStringLiteral("Select All");
const QString UnselectAll = QStringLiteral("UnSelect All");

template <class T> T* named(QWidget* parent, const QString& name)
{
    auto* widget = new T(parent);
    widget->setObjectName(name);
    return widget;
}

QLineEdit* lineEdit(QWidget* parent, const char* name)
{
    return named<QLineEdit>(parent, QString::fromLatin1(name));
}

QString money(double value)
{
    return QString::number(value, 'f', 2);
}

} // namespace

ServicesScreen::ServicesScreen(Session& session, ServicesManager::Kind kind, qint64 serviceUsedId,
                               QWidget* parent)
    : RecordScreen(session, QStringLiteral("frmServices"),
                   kind == ServicesManager::Kind::Master ? QStringLiteral("tblServices")
                                                         : QStringLiteral("tblServiceUsed"),
                   kind == ServicesManager::Kind::Master ? QStringLiteral("ServiceID")
                                                         : QStringLiteral("ServiceUsedID"),
                   parent),
      m_kind(kind), m_copyId(serviceUsedId), m_manager(session)
{
    setWindowTitle(QStringLiteral("Services"));
    const QString key = isCopy() ? QStringLiteral("ServiceUsedID") : QStringLiteral("ServiceID");
    m_jobNo = lineEdit(this, "txtJobNo");
    m_name = lineEdit(this, "txtName");
    m_crew = named<QComboBox>(this, QStringLiteral("cboCrew"));
    LookupCombo::loadItemWithId(m_crew, DataHelpers::crewInfo(session), QStringLiteral("CrewID"),
                                QStringLiteral("CrewNumber"), true);
    m_costCenter = named<QComboBox>(this, QStringLiteral("cboCostCenter"));
    LookupCombo::loadItemWithId(m_costCenter, m_manager.costCenterInfo(),
                                QStringLiteral("CostCenterID"), QStringLiteral("Description"),
                                true);
    auto* separate = named<QCheckBox>(this, QStringLiteral("ChkSeparateWO"));
    separate->setText(QStringLiteral("Separate Work Order"));
    m_labor = lineEdit(this, "txtBudgetedlabor");
    m_cost = lineEdit(this, "txtBudgetedcost");
    for (QLineEdit* budget : {m_labor, m_cost}) {
        budget->installEventFilter(this);
        connect(budget, &QLineEdit::textChanged, this, &ServicesScreen::showCosts);
    }
    auto* notes = named<QPlainTextEdit>(this, QStringLiteral("txtNotes"));
    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("Service No"), m_jobNo);
    fields->addRow(QStringLiteral("Name"), m_name);
    fields->addRow(QStringLiteral("Service Crew"), m_crew);
    fields->addRow(QStringLiteral("Cost Center"), m_costCenter);
    fields->addRow(QString(), separate);
    fields->addRow(QStringLiteral("Budgeted Hrs"), m_labor);
    fields->addRow(QStringLiteral("Tot Labor Cost"), m_cost);
    fields->addRow(QStringLiteral("Notes"), notes);
    auto* columns = new QHBoxLayout;
    columns->addLayout(fields);
    auto* schedule = new QVBoxLayout;
    columns->addLayout(schedule, 1);

    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdService"));
    grid->setFields({{key, key},
                     {QStringLiteral("JobNo"), QStringLiteral("Service No")},
                     {QStringLiteral("Name"), QStringLiteral("Name")}},
                    key);
    auto* outer = new QVBoxLayout;
    outer->addLayout(columns);
    setStandardLayout(outer, grid);

    auto* serviceId = lineEdit(this, "txtServiceID");
    serviceId->hide();
    bindField(serviceId, key, &m_service.serviceId);
    bindField(m_jobNo, QStringLiteral("JobNo"), &m_service.jobNo);
    bindField(m_name, QStringLiteral("Name"), &m_service.name);
    bindField(m_crew, QStringLiteral("CrewID"), &m_service.crew);
    bindField(m_costCenter, QStringLiteral("CostCenterID"), &m_service.costCenter);
    bindField(separate, QStringLiteral("SeparateWo"), &m_service.separateWorkOrder);
    bindField(m_labor, QStringLiteral("LaborEstimate"), &m_service.budgetedLabor);
    bindField(m_cost, QStringLiteral("CostEstimate"), &m_service.budgetedCost,
              QStringLiteral("Tot Labor Cost"), FieldBindings::Money);
    buildScheduleControls();
    schedule->addWidget(findChild<QWidget*>(QStringLiteral("fraSchedule")));
    bindField(notes, QStringLiteral("Note"), &m_service.notes);
    buildCostAndPartControls();
    schedule->addWidget(findChild<QWidget*>(QStringLiteral("fraParts")));
    connect(m_crew, &QComboBox::currentIndexChanged, this, &ServicesScreen::showCosts);
    if (!isCopy()) {
        setUniqueField(m_jobNo, QStringLiteral("JobNo"), false,
                       QStringLiteral("Job Number you specified already exists. Please enter a "
                                      "different Part Number."));
        onFieldExit(m_jobNo, [this](QWidget*) { onJobNoExit(); });
    } else {
        onFieldExit(m_name, [this](QWidget*) { onNameExit(); });
        onFieldExit(m_count, [this](QWidget*) { onCountExit(); });
    }
    setActionRights(UserRights::SerAdd, UserRights::SerMod, UserRights::SerDel);
}

void ServicesScreen::buildScheduleControls()
{
    auto* frame = named<QGroupBox>(this, QStringLiteral("fraSchedule"));
    auto* layout = new QGridLayout(frame);
    m_period = named<QComboBox>(frame, QStringLiteral("cboRenewalPeriod"));
    for (const QString& code : ScheduleCodes::periodCodes()) {
        m_period->addItem(ScheduleCodes::periodText(code), code);
    }
    m_interval = named<QSpinBox>(frame, QStringLiteral("RRSpin1"));
    m_interval->setRange(1, 99999);
    layout->addWidget(new QLabel(QStringLiteral("Reschedule"), frame), 0, 0);
    layout->addWidget(m_period, 0, 1);
    layout->addWidget(new QLabel(QStringLiteral("Every:"), frame), 0, 2);
    layout->addWidget(m_interval, 0, 3);
    const char* const optionNames[] = {"optWorkordercompletion", "optSVS", "OptDSA"};
    for (int i = 0; i < 3; ++i) {
        m_renewal[i] = named<QRadioButton>(frame, QString::fromLatin1(optionNames[i]));
        m_renewal[i]->setText(ScheduleCodes::renewalOnText(QString::fromLatin1(RenewalCodes[i])));
        layout->addWidget(m_renewal[i], 1, i, 1, i == 2 ? 2 : 1);
    }
    const std::array<QList<const char*>, 3> names{
        QList<const char*>(std::begin(DayNames), std::end(DayNames)),
        QList<const char*>(std::begin(WeekNames), std::end(WeekNames)),
        QList<const char*>(std::begin(MonthNames), std::end(MonthNames))};
    const char* const buttonNames[] = {"cmdMarkAllDays", "cmdAllWeeks", "cmdMOY"};
    for (int g = 0; g < 3; ++g) {
        auto* row = new QHBoxLayout;
        for (int i = 0; i < names[g].size(); ++i) {
            auto* box = named<QCheckBox>(frame, u"chk"_qs + QString::fromLatin1(names[g][i]));
            box->setText(QString::fromLatin1(names[g][i]));
            row->addWidget(box);
            m_groups[g].append(box);
            connect(box, &QCheckBox::toggled, this, [this, g] { setCaption(Group(g)); });
        }
        m_selectAll[g] = named<QPushButton>(frame, QString::fromLatin1(buttonNames[g]));
        connect(m_selectAll[g], &QPushButton::clicked, this, [this, g] { toggleGroup(Group(g)); });
        row->addWidget(m_selectAll[g]);
        layout->addLayout(row, 2 + g, 0, 1, 4);
    }
    for (int i = 0; i < 7; ++i) {
        bindField(m_groups[DaysGroup][i], QString::fromLatin1(DayNames[i]), &m_service.days[i]);
    }
    for (int i = 0; i < 5; ++i) {
        bindField(m_groups[WeeksGroup][i], QString::fromLatin1(WeekColumns[i]),
                  &m_service.weeks[i]);
    }
    for (int i = 0; i < 12; ++i) {
        bindField(m_groups[MonthsGroup][i],
                  i == 11 ? u"Dece"_qs : QString::fromLatin1(MonthNames[i]), &m_service.months[i]);
    }
    m_useDom = named<QCheckBox>(frame, QStringLiteral("chkUseDayoftheMonth"));
    m_useDom->setText(QStringLiteral("Use Day of the Month"));
    auto* domRow = new QHBoxLayout;
    domRow->addWidget(m_useDom);
    bindField(m_useDom, QStringLiteral("Dom"), &m_service.dayOfMonth);
    for (int i = 0; i < 5; ++i) {
        m_dom[i] = named<QComboBox>(frame, QStringLiteral("cboDOM%1").arg(i + 1));
        m_dom[i]->addItem(LookupCombo::BlankText, 0);
        for (int day = 1; day <= 31; ++day) {
            m_dom[i]->addItem(QString::number(day), day);
        }
        domRow->addWidget(m_dom[i]);
        bindField(m_dom[i], QStringLiteral("DOM%1").arg(i + 1), &m_service.dom[i]);
    }
    m_clearAll = named<QPushButton>(frame, QStringLiteral("cmdClearAll"));
    m_clearAll->setText(QStringLiteral("Clear All"));
    connect(m_clearAll, &QPushButton::clicked, this, [this] {
        for (QComboBox* list : m_dom) {
            list->setCurrentIndex(0);
        }
    });
    domRow->addWidget(m_clearAll);
    layout->addLayout(domRow, 5, 0, 1, 4);

    m_inactive = named<QCheckBox>(frame, QStringLiteral("chkInactive"));
    m_inactive->setText(QStringLiteral("Inactive"));
    m_nextLabel = named<QLabel>(frame, QStringLiteral("lblNextScheduledDate"));
    m_nextDate = named<DateBox>(frame, QStringLiteral("datNextScheduledDate"));
    m_countFrame = named<QWidget>(frame, QStringLiteral("fraNextScheduledCount"));
    m_count = lineEdit(m_countFrame, "txtCount");
    m_count->setValidator(new QIntValidator(-MaxCount, MaxCount, m_count));
    (new QHBoxLayout(m_countFrame))->addWidget(m_count);
    m_countFrame->layout()->setContentsMargins(0, 0, 0, 0);
    const char* const lastNames[] = {"LastDateScheduled", "LastDatePerformed"};
    const char* const lastCaptions[] = {"Last Date Scheduled", "Last Date Performed"};
    m_copyOnly = {m_inactive, m_nextLabel, m_nextDate, m_countFrame};
    for (int i = 0; i < 2; ++i) {
        auto* label = named<QLabel>(frame, u"lbl"_qs + QString::fromLatin1(lastNames[i]));
        label->setText(QString::fromLatin1(lastCaptions[i]));
        m_lastDates[i] = named<DateBox>(frame, u"dat"_qs + QString::fromLatin1(lastNames[i]));
        layout->addWidget(label, 7, i * 2);
        layout->addWidget(m_lastDates[i], 7, i * 2 + 1);
        m_copyOnly += {label, m_lastDates[i]};
        addField(m_lastDates[i]);
    }
    layout->addWidget(m_inactive, 6, 0);
    layout->addWidget(m_nextLabel, 6, 1);
    layout->addWidget(m_nextDate, 6, 2);
    layout->addWidget(m_countFrame, 6, 3);
    for (QWidget* field : QList<QWidget*>{m_period, m_interval, m_renewal[0], m_renewal[1],
                                          m_renewal[2], m_inactive, m_nextDate, m_count}) {
        addField(field);
    }
    for (QWidget* copyField : m_copyOnly) {
        copyField->setVisible(isCopy());
    }
    connect(m_period, &QComboBox::currentIndexChanged, this, [this] {
        checkServiceChange(!m_showing);
        enableLogicControl();
    });
    connect(m_renewal[2], &QRadioButton::toggled, this, &ServicesScreen::enableLogicControl);
    connect(m_useDom, &QCheckBox::toggled, this, &ServicesScreen::onUseDayOfMonth);
    connect(m_inactive, &QCheckBox::toggled, this, &ServicesScreen::onInactive);
}

void ServicesScreen::buildCostAndPartControls()
{
    auto* frame = named<QGroupBox>(this, QStringLiteral("fraParts"));
    auto* layout = new QGridLayout(frame);
    m_partCost = lineEdit(frame, "txtPartCost");
    m_totalCost = lineEdit(frame, "txtTotalCost");
    m_laborRate = lineEdit(frame, "txtLaborRate");
    const char* const captions[] = {"Part Cost", "Total Cost", "Labor Rate"};
    const std::array<QLineEdit*, 3> shown{m_partCost, m_totalCost, m_laborRate};
    for (int i = 0; i < 3; ++i) {
        shown[i]->setReadOnly(true);
        layout->addWidget(new QLabel(QString::fromLatin1(captions[i]), frame), 0, i * 2);
        layout->addWidget(shown[i], 0, i * 2 + 1);
    }
    m_parts = named<QTableWidget>(frame, QStringLiteral("grdParts"));
    m_parts->setColumnCount(4);
    m_parts->setHorizontalHeaderLabels({QStringLiteral("Part No"), QStringLiteral("Description"),
                                        QStringLiteral("Quantity"), QStringLiteral("Price")});
    m_parts->horizontalHeader()->setStretchLastSection(true);
    m_parts->setSelectionBehavior(QAbstractItemView::SelectRows);
    connect(m_parts, &QTableWidget::itemChanged, this, &ServicesScreen::onPartEdited);
    layout->addWidget(m_parts, 1, 0, 1, 6);
    m_addPart = named<QPushButton>(frame, QStringLiteral("cmdAddPart"));
    m_addPart->setText(QStringLiteral("Add Part"));
    m_removePart = named<QPushButton>(frame, QStringLiteral("cmdRemove"));
    m_removePart->setText(QStringLiteral("Remove"));
    connect(m_addPart, &QPushButton::clicked, this, &ServicesScreen::addParts);
    connect(m_removePart, &QPushButton::clicked, this, &ServicesScreen::removePart);
    layout->addWidget(m_addPart, 2, 4);
    layout->addWidget(m_removePart, 2, 5);
}

QVariant ServicesScreen::showServicesDetail(Session& session, Mode mode, const QVariant& id,
                                            QWidget* parent)
{
    ServicesScreen screen(session, ServicesManager::Kind::Master, 0, parent);
    screen.setPendingId(id);
    screen.run(mode);
    return screen.chosenId();
}

void ServicesScreen::showServiceUsedDetail(Session& session, qint64 serviceUsedId, QWidget* parent)
{
    ServicesScreen screen(session, ServicesManager::Kind::Copy, serviceUsedId, parent);
    screen.setPendingId(serviceUsedId);
    screen.run();
}

Rows ServicesScreen::loadRecords()
{
    return isCopy() ? m_manager.copyRow(m_copyId) : m_manager.list();
}

void ServicesScreen::clearData()
{
    m_showing = true;
    RecordScreen::clearData();
    m_period->setCurrentIndex(m_period->findData(QStringLiteral("D")));
    m_interval->setValue(1);
    m_renewal[0]->setChecked(true);
    if (mode() == Mode::Add && !isCopy()) {
        m_jobNo->setText(m_manager.nextJobNo());
    }
    m_parts->setRowCount(0);
    m_showing = false;
    showCosts();
    for (int g = 0; g < 3; ++g) {
        setCaption(Group(g));
    }
}

void ServicesScreen::displayData(const QSqlRecord& record)
{
    m_showing = true;
    RecordScreen::displayData(record);
    const int period = m_period->findData(record.value(QStringLiteral("Period")).toString());
    m_period->setCurrentIndex(std::max(period, 0));
    m_interval->setValue(int(record.value(QStringLiteral("EInterval")).toLongLong()));
    const QString renewal = record.value(QStringLiteral("RenewalOn")).toString().toUpper();
    for (int i = 0; i < 3; ++i) {
        m_renewal[i]->setChecked(renewal == QString::fromLatin1(RenewalCodes[i]) ||
                                 (i == 0 && renewal.isEmpty()));
    }
    if (isCopy()) {
        m_inactive->setChecked(record.value(QStringLiteral("Inactive")).toLongLong() != 0);
        m_nextDate->setValue(SqlValue::toDate(record.value(QStringLiteral("NextScheduledDate"))));
        m_count->setText(record.value(QStringLiteral("NextScheduledCount")).toString());
        m_lastDates[0]->setValue(
            SqlValue::toDate(record.value(QStringLiteral("LastDateScheduled"))));
        m_lastDates[1]->setValue(
            SqlValue::toDate(record.value(QStringLiteral("LastDatePerformed"))));
        checkServiceChange(false);
    }
    showParts();
    m_showing = false;
    showCosts();
    for (int g = 0; g < 3; ++g) {
        setCaption(Group(g));
    }
    enableLogicControl();
}

QString ServicesScreen::periodCode() const
{
    return m_period->currentData().toString();
}

bool ServicesScreen::validateFields()
{
    Prompter& prompter = session().prompter();
    const auto fail = [&prompter](QWidget* field, const QString& message) {
        prompter.inform(message);
        field->setFocus();
        return false;
    };
    if (m_name->text().trimmed().isEmpty()) {
        return fail(m_name, QStringLiteral("Name should not be blank"));
    }
    if (LookupCombo::currentId(m_costCenter) == 0) {
        return fail(m_costCenter, QStringLiteral("Select one Cost Center"));
    }
    if (LookupCombo::currentId(m_crew) == 0) {
        return fail(m_crew, QStringLiteral("Select one Crew"));
    }
    if (m_useDom->isChecked() && m_dom[0]->currentIndex() <= 0) {
        return fail(m_dom[0], QStringLiteral("User Should fill at least one day of the month"));
    }
    if (!checkSchedule()) {
        return false;
    }
    if (!isCopy() && m_jobNo->text().trimmed().isEmpty()) {
        return fail(m_jobNo, QStringLiteral("Service Job No should not be blank."));
    }
    return !isCopy() || confirmOnWorkOrder();
}

bool ServicesScreen::checkSchedule()
{
    if (m_renewal[2]->isChecked() || !ScheduleCodes::isCalendarPeriod(periodCode()) ||
        m_useDom->isChecked()) {
        return true;
    }
    const char* const messages[] = {"At least select one day of week.",
                                    "At least select one week of month.",
                                    "At least select one month of year."};
    for (int g = 0; g < 3; ++g) {
        if (!anyTicked(Group(g))) {
            session().prompter().inform(QString::fromLatin1(messages[g]));
            m_groups[g].first()->setFocus();
            return false;
        }
    }
    return true;
}

bool ServicesScreen::confirmOnWorkOrder()
{
    const QSqlRecord stored = currentRecord();
    const QDate storedDate = SqlValue::toDate(stored.value(QStringLiteral("NextScheduledDate")));
    const QString storedCount = stored.value(QStringLiteral("NextScheduledCount")).toString();
    const bool dateChanged = m_nextDate->isVisible() && m_nextDate->value() != storedDate;
    const bool countChanged = m_countFrame->isVisible() && m_count->text().trimmed() != storedCount;
    if ((!dateChanged && !countChanged) ||
        !NextDateCalculator(session()).serviceInWorkOrder(m_copyId)) {
        return true;
    }
    Prompter& prompter = session().prompter();
    if (dateChanged && !prompter.askYesNo(ServiceMessages::dateOnWorkOrder())) {
        setFieldQuietly([&] { m_nextDate->setValue(storedDate); });
    }
    if (countChanged && !prompter.askYesNo(ServiceMessages::countOnWorkOrder())) {
        setFieldQuietly([&] { m_count->setText(storedCount); });
    }
    return true;
}

void ServicesScreen::setObjectValues()
{
    RecordScreen::setObjectValues();
    m_service.renewalPeriod = periodCode();
    m_service.renewalInterval = m_interval->value();
    for (int i = 0; i < 3; ++i) {
        if (m_renewal[i]->isChecked()) {
            m_service.renewalBasedOn = QString::fromLatin1(RenewalCodes[i]);
        }
    }
    if (m_count->text().trimmed().isEmpty()) {
        m_count->setText(QStringLiteral("0"));
    }
}

bool ServicesScreen::saveRecord(QVariant* id)
{
    if (isCopy()) {
        const QSqlRecord stored = currentRecord();
        const bool meter = ScheduleCodes::isMeterPeriod(m_service.renewalPeriod);
        const ServiceCopy copy{stored.value(QStringLiteral("EquipmentID")).toLongLong(),
                               meter ? QDate() : m_nextDate->value(),
                               m_count->text().trimmed().toLongLong(), m_inactive->isChecked()};
        const QDate nextDate =
            meter ? SqlValue::toDate(stored.value(QStringLiteral("NextScheduledDate")))
                  : copy.nextDate;
        *id = m_copyId;
        return m_manager.saveServiceUsedRecord(m_copyId, m_lastDates[0]->value(),
                                               m_lastDates[1]->value(), nextDate) &&
               m_manager.saveServiceUsed(m_service, copy,
                                         CountReadingScreen::serviceCountAsker(session(), this));
    }
    const QString oldJobNo = currentRecord().value(QStringLiteral("JobNo")).toString();
    if (mode() == Mode::Modify && m_service.jobNo != oldJobNo &&
        session().prompter().askYesNo(QStringLiteral("Do you want to change Job No of \"") +
                                      oldJobNo + QStringLiteral("\" to \"") + m_service.jobNo +
                                      QStringLiteral("\" for all existing services?")) &&
        !m_manager.updateJobNoForAllService(m_service.serviceId, m_service.jobNo)) {
        return false;
    }
    if (!m_manager.saveRecord(m_service, mode() == Mode::Add)) {
        return false;
    }
    *id = m_service.serviceId;
    return true;
}

QString ServicesScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteServices(id.toLongLong());
}

bool ServicesScreen::deleteRecord(const QVariant& id)
{
    // A machine's copy goes from the machine's own list, never from here.
    return !isCopy() && m_manager.deleteRecord(id.toLongLong());
}

void ServicesScreen::enableControls()
{
    if (isCopy()) {
        for (const char* name : {"cmdAdd", "cmdDelete"}) {
            findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(false);
        }
    }
    const bool hasRecord = !isEmpty() && mode() != Mode::Add;
    m_addPart->setEnabled(!isEmpty() || mode() == Mode::Add);
    m_removePart->setEnabled(hasRecord);
    enableLogicControl();
}

void ServicesScreen::enableLogicControl()
{
    if (m_name->isReadOnly()) {
        return; // locked fields stay locked
    }
    const bool inactive = isCopy() && m_inactive->isChecked();
    const bool meter = ScheduleCodes::isMeterPeriod(periodCode());
    const bool dontRepeat = m_renewal[2]->isChecked();
    for (QWidget* field :
         QList<QWidget*>{m_period, m_renewal[0], m_renewal[1], m_renewal[2], m_nextDate, m_count}) {
        field->setEnabled(!inactive);
    }
    const bool domOn = !inactive && !dontRepeat && !meter;
    const bool patternsOn = domOn && !m_useDom->isChecked();
    const bool intervalOn = !inactive && !dontRepeat && (meter || !m_useDom->isChecked());
    for (int g = 0; g < 3; ++g) {
        for (QCheckBox* box : m_groups[g]) {
            box->setEnabled(patternsOn);
        }
        m_selectAll[g]->setEnabled(patternsOn);
    }
    m_useDom->setEnabled(domOn);
    for (QComboBox* list : m_dom) {
        list->setEnabled(domOn);
    }
    m_clearAll->setEnabled(domOn);
    m_interval->setEnabled(intervalOn);
}

void ServicesScreen::checkServiceChange(bool propose)
{
    if (!isCopy()) {
        return;
    }
    const bool meter = ScheduleCodes::isMeterPeriod(periodCode());
    m_nextLabel->setText(meter ? QStringLiteral("Next Scheduled Count")
                               : QStringLiteral("Next Scheduled Date"));
    m_nextDate->setVisible(!meter);
    m_countFrame->setVisible(meter);
    if (meter && propose) {
        const qint64 equipmentId =
            currentRecord().value(QStringLiteral("EquipmentID")).toLongLong();
        const qint64 proposed =
            m_interval->value() +
            NextDateCalculator(session()).equipmentCountByPeriod(equipmentId, periodCode());
        if (proposed > MaxCount) {
            session().prompter().inform(
                QStringLiteral("Next service count is bigger than field size. please contact ") +
                ErrorReport::MailEndpoint::fromStore(session().store()).recipient);
            return;
        }
        m_count->setText(QString::number(proposed));
    }
}

void ServicesScreen::onUseDayOfMonth(bool on)
{
    if (on && !m_showing) {
        // One day's step from the completion: the list alone decides the date.
        m_interval->setValue(1);
        m_period->setCurrentIndex(m_period->findData(QStringLiteral("D")));
        m_renewal[0]->setChecked(true);
    }
    enableLogicControl();
}

void ServicesScreen::onInactive(bool on)
{
    if (on && !m_showing && NextDateCalculator(session()).serviceInWorkOrder(m_copyId)) {
        session().prompter().inform(QStringLiteral(
            "This service is already assigned to a work order. You cann't setted inactive."));
        setFieldQuietly([this] { m_inactive->setChecked(false); });
    }
    enableLogicControl();
}

void ServicesScreen::onJobNoExit()
{
    if (!isEditing()) {
        return;
    }
    const QString jobNo = m_jobNo->text().trimmed();
    const QString oldJobNo =
        mode() == Mode::Add ? QString() : currentRecord().value(QStringLiteral("JobNo")).toString();
    QString message;
    if (jobNo.isEmpty()) {
        message = QStringLiteral("Service Job No should not be blank.");
    } else if (DataHelpers::isDuplicate(session(), QStringLiteral("tblServices"),
                                        QStringLiteral("JobNo"), jobNo, oldJobNo, false)) {
        message = QStringLiteral("Job Number you specified already exists. Please enter a "
                                 "different Part Number.");
    }
    if (!message.isEmpty()) {
        session().prompter().inform(message);
        m_jobNo->setFocus();
    }
}

void ServicesScreen::onNameExit()
{
    const QString stored = currentRecord().value(QStringLiteral("Name")).toString();
    if (!isEditing() || m_name->text().trimmed() == stored.trimmed()) {
        return;
    }
    if (!session().prompter().askYesNo(
            QStringLiteral("You should not change the name of a service. If you need a new "
                           "service add it using the \"Services\" navigator on the left side. "
                           "Then add it to this piece of equipment. Are you sure you want to do "
                           "this?"))) {
        m_name->setText(stored);
    }
}

void ServicesScreen::onCountExit()
{
    if (!isEditing() || !m_countFrame->isVisible()) {
        return;
    }
    const QString text = m_count->text().trimmed();
    if (text.isEmpty()) {
        session().prompter().inform(QStringLiteral("Please enter the next schedule count"));
    } else if (text.toLongLong() < 1) {
        session().prompter().inform(ServiceMessages::CountNotPositive);
        const qint64 equipmentId =
            currentRecord().value(QStringLiteral("EquipmentID")).toLongLong();
        m_count->setText(QString::number(
            NextDateCalculator(session()).equipmentCountByPeriod(equipmentId, periodCode()) + 1));
    } else {
        return;
    }
    m_count->setFocus();
}

bool ServicesScreen::anyTicked(Group group) const
{
    return std::any_of(m_groups[group].begin(), m_groups[group].end(),
                       [](const QCheckBox* box) { return box->isChecked(); });
}

void ServicesScreen::toggleGroup(Group group)
{
    const bool tick = !anyTicked(group);
    for (QCheckBox* box : m_groups[group]) {
        box->setChecked(tick);
    }
}

void ServicesScreen::setCaption(Group group)
{
    m_selectAll[group]->setText(anyTicked(group) ? UnselectAll : SelectAll);
}

void ServicesScreen::showCosts()
{
    if (m_showing) {
        return;
    }
    const qint64 id = mode() == Mode::Add ? 0 : currentId().toLongLong();
    const double parts = id == 0 ? 0 : m_manager.partCost(m_kind, id);
    m_partCost->setText(money(parts));
    m_totalCost->setText(money(parts + m_cost->text().toDouble()));
    m_laborRate->setText(money(LabourCost::laborCost(session(), LookupCombo::currentId(m_crew))));
}

void ServicesScreen::showParts()
{
    m_fillingParts = true;
    const Rows rows = isEmpty() ? Rows() : m_manager.parts(m_kind, currentId().toLongLong());
    m_parts->setRowCount(int(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < 4; ++c) {
            const QVariant value = rows[r].value(c);
            auto* item = new QTableWidgetItem(c >= 2 ? money(value.toDouble()) : value.toString());
            if (c < 2) {
                item->setFlags(item->flags() & ~Qt::ItemIsEditable);
            }
            m_parts->setItem(r, c, item);
        }
    }
    m_fillingParts = false;
}

void ServicesScreen::onPartEdited(QTableWidgetItem* item)
{
    if (m_fillingParts) {
        return;
    }
    const int row = item->row();
    if (beginModify()) {
        m_manager.savePartGridChanges(
            m_kind, currentId().toLongLong(), m_parts->item(row, 0)->text(),
            m_parts->item(row, 2)->text().toDouble(), m_parts->item(row, 3)->text().toDouble());
    }
    showParts();
    showCosts();
}

void ServicesScreen::addParts()
{
    Prompter& prompter = session().prompter();
    if (mode() == Mode::Add) {
        if (!prompter.askYesNo(QStringLiteral("Record must be saved. Do you want to save it."))) {
            return;
        }
        findChild<QPushButton*>(QStringLiteral("cmdUpdate"))->click();
        if (mode() != Mode::Browse) {
            return;
        }
    }
    if (!isCopy()) {
        prompter.inform(QStringLiteral(
            "Note: You should not add equipment specfic parts to the master service list."));
    }
    const qint64 id = currentId().toLongLong();
    QString picked = m_manager.partExcludeText(m_kind, id);
    if (PartManagerScreen::showPartManager(session(), &picked, true, this) && beginModify()) {
        m_manager.addPicked(m_kind, id, picked);
    }
    showParts();
    showCosts();
}

void ServicesScreen::removePart()
{
    const int row = m_parts->currentRow();
    if (row < 0 || !session().prompter().askYesNo(MessageTexts::DeleteQuestion) || !beginModify()) {
        return;
    }
    m_manager.removePart(m_kind, currentId().toLongLong(), m_parts->item(row, 0)->text());
    showParts();
    showCosts();
}

void ServicesScreen::priceFromCrew()
{
    m_cost->setText(
        money(m_manager.budgetedCost(LookupCombo::currentId(m_crew), m_labor->text().toDouble())));
}

bool ServicesScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonDblClick && !m_cost->isReadOnly() &&
        (watched == m_labor || watched == m_cost)) {
        priceFromCrew();
        return true;
    }
    return RecordScreen::eventFilter(watched, event);
}
