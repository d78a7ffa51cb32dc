#include "MainScreen.h"

#include "AboutScreen.h"
#include "ErrorHandler.h"
#include "FormPlacement.h"
#include "HelpFiles.h"
#include "HelpWindow.h"
#include "MainNavigator.h"
#include "Options.h"
#include "Prompter.h"
#include "Session.h"
#include "UpdateCheck.h"
#include "UserRights.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>
#include <exception>

namespace {

const QColor HeaderBackground{175, 179, 186};
const QColor LogoForeground{36, 71, 109};
const QString UpdateDatabase = QStringLiteral("mnuUpdateDatabase");
const QString NoUser;
const QString ChiefUser = QStringLiteral("CHIEF");

/** The report entries each right guards: without the right they stay visible but disabled. */
const QList<std::pair<QString, UserRights::Right>>& guardedEntries()
{
    static const QList<std::pair<QString, UserRights::Right>> entries = {
        {QStringLiteral("mnuEquipmentList"), UserRights::EqList},
        {QStringLiteral("mnuEquipmentDetails"), UserRights::EqDetail},
        {QStringLiteral("mnuPrintCount"), UserRights::EqCountSheet},
        {QStringLiteral("mnuRecordCount"), UserRights::EqCountSheet},
        {QStringLiteral("mnuExpensesOnEquip"), UserRights::ExpOnEq},
        {QStringLiteral("mnuEquipmentUtilization"), UserRights::EqUtilization},
        {QStringLiteral("mnuEquipmentCrewHistory"), UserRights::EqCrewHistory},
        {QStringLiteral("mnuEquipmentScanHistory"), UserRights::EqScanHistory},
        {QStringLiteral("munInspectiondate"), UserRights::InspDatReading},
        {QStringLiteral("mnuEquipmentInspectionReport"), UserRights::InspDatReading},
        {QStringLiteral("munLicenseDate"), UserRights::LicRenDateReading},
        {QStringLiteral("mnuEquipmentLicenseReport"), UserRights::LicRenDateReading},
        {QStringLiteral("mnuWorkorderhistoryReport"), UserRights::WOHistory},
        {QStringLiteral("mnuServiceList"), UserRights::SerList},
        {QStringLiteral("mnuServiceByUnitno"), UserRights::SerEqName},
        {QStringLiteral("mnuServiceHistory"), UserRights::SerHistory},
        {QStringLiteral("mnuServicesHistoryTimes"), UserRights::SerHistoryTime},
        {QStringLiteral("mnuInventoryReport"), UserRights::InvReport},
        {QStringLiteral("mnuInventoryReorder"), UserRights::InvReorderReport},
        {QStringLiteral("mnuInventoryOrderUpcommingServices"), UserRights::InvOrUpSer},
        {QStringLiteral("mnuInventoryPartUsage"), UserRights::InvPartUsage},
        {QStringLiteral("mnuInventoryPartHistory"), UserRights::InvPartHistory},
    };
    return entries;
}

/** Navigator entries that act as a menu entry does, and follow its state. */
QString menuEntryOfNavigator(int index)
{
    switch (index) {
    case 0:
        return QStringLiteral("mnuPrintWO");
    case 2:
        return QStringLiteral("mnuViewService");
    default:
        return QString();
    }
}

constexpr int HelpNavigatorIndex = 7;

int twipsToPixels(int twips)
{
    return qRound(double(twips) / FormPlacement::TwipsPerPixel);
}

} // namespace

MainScreen::MainScreen(Session& session, QWidget* parent)
    : QMainWindow(parent), m_session(session),
      m_urlOpener([](const QUrl& url) { return QDesktopServices::openUrl(url); }),
      m_exitHandler([] { QCoreApplication::exit(0); })
{
    setObjectName(QStringLiteral("frmMainScreen"));
    setWindowTitle(QStringLiteral("Korvelle ") + Options::versionNo(m_session));

    auto* frame = new QWidget;
    auto* column = new QVBoxLayout(frame);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(buildHeader());
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    m_navigator = new MainNavigator;
    row->addWidget(m_navigator);
    m_home = new QWidget;
    m_home->setObjectName(QStringLiteral("pnlOverDueWork"));
    m_home->setAutoFillBackground(true);
    QPalette workspace = m_home->palette();
    workspace.setColor(QPalette::Window, workspace.color(QPalette::Mid));
    m_home->setPalette(workspace);
    row->addWidget(m_home, 1);
    column->addLayout(row, 1);
    setCentralWidget(frame);

    buildMenus();
    buildToolBar();
    registerOwnEntries();
    applyUser();
    connect(m_navigator, &MainNavigator::entryClicked, this, &MainScreen::runNavigator);
    refreshEntries();
    restoreSize();
}

MainScreen::~MainScreen() = default;

QWidget* MainScreen::buildHeader()
{
    auto* header = new QFrame;
    header->setObjectName(QStringLiteral("picHeaderBar"));
    header->setAutoFillBackground(true);
    QPalette colours = header->palette();
    colours.setColor(QPalette::Window, HeaderBackground);
    header->setPalette(colours);
    header->setFixedHeight(56);

    auto* logo = new QLabel(QStringLiteral("Korvelle"));
    logo->setObjectName(QStringLiteral("imgHeaderLogo"));
    QFont font = logo->font();
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setBold(true);
    logo->setFont(font);
    QPalette text = logo->palette();
    text.setColor(QPalette::WindowText, LogoForeground);
    logo->setPalette(text);

    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(16, 0, 16, 0);
    layout->addWidget(logo);
    layout->addStretch();
    return header;
}

QMenu* MainScreen::addMenu(QWidget* above, const QString& objectName, const QString& title)
{
    QMenu* menu = nullptr;
    if (auto* bar = qobject_cast<QMenuBar*>(above)) {
        menu = bar->addMenu(title);
    } else {
        menu = static_cast<QMenu*>(above)->addMenu(title);
    }
    menu->setObjectName(objectName);
    m_actions.insert(objectName, menu->menuAction());
    return menu;
}

QAction* MainScreen::addEntry(QMenu* menu, const QString& objectName, const QString& caption)
{
    QAction* entry = menu->addAction(caption);
    entry->setObjectName(objectName);
    m_actions.insert(objectName, entry);
    connect(entry, &QAction::triggered, this, [this, objectName] { runEntry(objectName); });
    return entry;
}

void MainScreen::buildMenus()
{
    QMenuBar* bar = menuBar();
    bar->setObjectName(QStringLiteral("mnuMain"));

    QMenu* file = addMenu(bar, QStringLiteral("mnuFile"), QStringLiteral("&File"));
    addEntry(file, QStringLiteral("mnuCompactDB"), QStringLiteral("Compact And Repair Database"));
    addEntry(file, QStringLiteral("mnuExportXml"), QStringLiteral("Export To Windows Mobile"));
    addEntry(file, QStringLiteral("mnuImporttXml"), QStringLiteral("Import From Windows Mobile"));
    addEntry(file, QStringLiteral("mnuSetup"), QStringLiteral("Setup"));
    QMenu* passwords = addMenu(file, QStringLiteral("munPasswords"), QStringLiteral("Passwords"));
    addEntry(passwords, QStringLiteral("mnuChangePassword"), QStringLiteral("Change Password"));
    addEntry(passwords, QStringLiteral("mnuusrmanagement"), QStringLiteral("User Management"));
    addEntry(file, UpdateDatabase, QStringLiteral("Update Database"));
    addEntry(file, QStringLiteral("mnumakebackup"), QStringLiteral("Make a BackUp"));
    addEntry(file, QStringLiteral("mnurestorebackup"), QStringLiteral("Restore a BackUp"));
    file->addSeparator();
    addEntry(file, QStringLiteral("mnuExit"), QStringLiteral("Exit"));

    QMenu* workOrder = addMenu(bar, QStringLiteral("mnuWorkOrder"), QStringLiteral("&Work Order"));
    addEntry(workOrder, QStringLiteral("mnuRecordWork"), QStringLiteral("Record Work"));
    addEntry(workOrder, QStringLiteral("mnuPrintWO"), QStringLiteral("Print W/O"));

    QMenu* view = addMenu(bar, QStringLiteral("mnuView"), QStringLiteral("&View"));
    addEntry(view, QStringLiteral("mnuViewEqipment"), QStringLiteral("Equipment"));
    addEntry(view, QStringLiteral("mnuViewService"), QStringLiteral("Service"));
    addEntry(view, QStringLiteral("mnuViewSupplier"), QStringLiteral("Supplier"));
    addEntry(view, QStringLiteral("mnuViewEmployee"), QStringLiteral("Employee"));
    addEntry(view, QStringLiteral("mnuViewPart"), QStringLiteral("Parts"));

    QMenu* add = addMenu(bar, QStringLiteral("mnuAdd"), QStringLiteral("&Add"));
    addEntry(add, QStringLiteral("mnuAddEquipment"), QStringLiteral("Equipment"));
    addEntry(add, QStringLiteral("mnuAddService"), QStringLiteral("Service"));
    addEntry(add, QStringLiteral("mnuAddSupplier"), QStringLiteral("Supplier"));
    addEntry(add, QStringLiteral("mnuAddEmployee"), QStringLiteral("Employee"));
    addEntry(add, QStringLiteral("mnuAddPart"), QStringLiteral("Part"));

    QMenu* equipment = addMenu(bar, QStringLiteral("mnuEquipment"), QStringLiteral("&Equipment"));
    addEntry(equipment, QStringLiteral("mnuRecordCount"), QStringLiteral("Record Count"));
    addEntry(equipment, QStringLiteral("munInspectiondate"),
             QStringLiteral("Inspection Date Reading"));
    addEntry(equipment, QStringLiteral("munLicenseDate"),
             QStringLiteral("License Renewal Date Reading"));
    addEntry(equipment, QStringLiteral("mnuPrintCount"), QStringLiteral("Print Count"));

    QMenu* reports = addMenu(bar, QStringLiteral("mnuReports"), QStringLiteral("&Reports"));
    QMenu* equipmentReports = addMenu(reports, QStringLiteral("mnuEquipmentReports"),
                                      QStringLiteral("Equipment Reports"));
    addEntry(equipmentReports, QStringLiteral("mnuEquipmentList"),
             QStringLiteral("Equipment List"));
    addEntry(equipmentReports, QStringLiteral("mnuEquipmentDetailList"),
             QStringLiteral("Equipment Detail List"));
    addEntry(equipmentReports, QStringLiteral("mnuEquipmentDetails"),
             QStringLiteral("Equipment Details"));
    addEntry(equipmentReports, QStringLiteral("mnuEquipmentCrewHistory"),
             QStringLiteral("Equipment Crew History"));
    addEntry(equipmentReports, QStringLiteral("mnuExpensesOnEquip"),
             QStringLiteral("Expenses On Equipment"));
    addEntry(equipmentReports, QStringLiteral("mnuEquipmentUtilization"),
             QStringLiteral("Equipment Utilization"));
    addEntry(equipmentReports, QStringLiteral("mnuEquipmentScanHistory"),
             QStringLiteral("Equipment Scan History"));
    addEntry(equipmentReports, QStringLiteral("mnuEquipmentInspectionReport"),
             QStringLiteral("Equipment Inspection Report"));
    addEntry(equipmentReports, QStringLiteral("mnuEquipmentLicenseReport"),
             QStringLiteral("Equipment License Report"));
    addEntry(equipmentReports, QStringLiteral("mnuWorkorderhistoryReport"),
             QStringLiteral("Work Order History"));
    QMenu* serviceReports =
        addMenu(reports, QStringLiteral("mnuServiceReports"), QStringLiteral("Service Reports"));
    addEntry(serviceReports, QStringLiteral("mnuServiceHistory"),
             QStringLiteral("Service History $"));
    addEntry(serviceReports, QStringLiteral("mnuServiceByUnitno"),
             QStringLiteral("Services By Equipment Name"));
    addEntry(serviceReports, QStringLiteral("mnuServiceList"), QStringLiteral("List Of Services"));
    addEntry(serviceReports, QStringLiteral("mnuServicesHistoryTimes"),
             QStringLiteral("Services History Times"));
    QMenu* inventoryReports = addMenu(reports, QStringLiteral("mnuInventoryReports"),
                                      QStringLiteral("Inventory Reports"));
    addEntry(inventoryReports, QStringLiteral("mnuInventoryReport"),
             QStringLiteral("Inventory Report"));
    addEntry(inventoryReports, QStringLiteral("mnuInventoryReorder"),
             QStringLiteral("Inventory Reorder"));
    addEntry(inventoryReports, QStringLiteral("mnuInventoryOrderUpcommingServices"),
             QStringLiteral("Inventory Order For Upcomming Services"));
    addEntry(inventoryReports, QStringLiteral("mnuInventoryPartUsage"),
             QStringLiteral("Inventory Part Usage"));
    addEntry(inventoryReports, QStringLiteral("mnuInventoryPartHistory"),
             QStringLiteral("Inventory Part History"));
    addEntry(reports, QStringLiteral("mnuErrorReport"), QStringLiteral("Error Report"));
    QMenu* customReports =
        addMenu(reports, QStringLiteral("mnuCustomReports"), QStringLiteral("Custom Reports"));
    addEntry(customReports, QStringLiteral("mnuNewReport"), QStringLiteral("Create New Report"));
    addEntry(customReports, QStringLiteral("mnuViewUserReport"),
             QStringLiteral("View Custom Report"));
    addEntry(customReports, QStringLiteral("mnuModifyReport"), QStringLiteral("Modify Reports"));

    QMenu* help = addMenu(bar, QStringLiteral("mnuHelp"), QStringLiteral("&Help"));
    addEntry(help, QStringLiteral("mnuTandrillHelp"), QStringLiteral("Korvelle Help"));
    addEntry(help, QStringLiteral("mnuTandrillOnline"), QStringLiteral("Korvelle Online"));
    addEntry(help, QStringLiteral("mnuQickStart"), QStringLiteral("Quick Start Manual"));
    addEntry(help, QStringLiteral("mnuContactUs"), QStringLiteral("Contact Us"));
    addEntry(help, QStringLiteral("mnuCheckForUpdates"), QStringLiteral("Check For Updates"));
    addEntry(help, QStringLiteral("mnuAboutTandrill"), QStringLiteral("About Korvelle"));
}

void MainScreen::buildToolBar()
{
    QToolBar* toolBar = addToolBar(QStringLiteral("Main"));
    toolBar->setObjectName(QStringLiteral("MainToolBar"));
    toolBar->setMovable(false);
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    struct Button
    {
        QString entry;
        QString text;
        QStyle::StandardPixmap picture;
    };
    const Button buttons[] = {
        {QStringLiteral("mnuPrintWO"), QStringLiteral("Print W/O"),
         QStyle::SP_FileDialogDetailedView},
        {QStringLiteral("mnuRecordWork"), QStringLiteral("Record Work"),
         QStyle::SP_DialogApplyButton},
        {QStringLiteral("mnuRecordCount"), QStringLiteral("Record Count"),
         QStyle::SP_FileDialogInfoView},
        {QStringLiteral("mnuAddPart"), QStringLiteral("Add Part"), QStyle::SP_FileDialogNewFolder},
    };
    // The buttons are the menu entries themselves, so they share their handler and state.
    for (const Button& button : buttons) {
        if (!toolBar->actions().isEmpty()) {
            toolBar->addSeparator();
        }
        QAction* entry = m_actions.value(button.entry);
        entry->setIcon(style()->standardIcon(button.picture));
        entry->setIconText(button.text);
        toolBar->addAction(entry);
    }
}

void MainScreen::registerOwnEntries()
{
    m_handlers.insert(QStringLiteral("mnuExit"), [this] { exitNow(); });
    m_handlers.insert(QStringLiteral("mnuTandrillHelp"), [this] { showHelp(); });
    m_handlers.insert(QStringLiteral("mnuTandrillOnline"),
                      [this] { openStoredUrl(QStringLiteral("Web"), QStringLiteral("Site")); });
    m_handlers.insert(QStringLiteral("mnuQickStart"), [this] { showQuickStart(); });
    m_handlers.insert(QStringLiteral("mnuContactUs"),
                      [this] { openStoredUrl(QStringLiteral("Web"), QStringLiteral("Contact")); });
    m_handlers.insert(QStringLiteral("mnuCheckForUpdates"), [this] { checkForUpdates(); });
    m_handlers.insert(QStringLiteral("mnuAboutTandrill"),
                      [this] { AboutScreen::showAbout(m_session, this); });
}

void MainScreen::applyUser()
{
    const QString user = m_session.userName();
    m_actions.value(QStringLiteral("mnuusrmanagement"))->setVisible(user == ChiefUser);
    m_actions.value(QStringLiteral("munPasswords"))->setVisible(user != NoUser);
}

QAction* MainScreen::action(const QString& objectName) const
{
    return m_actions.value(objectName);
}

bool MainScreen::setHandler(const QString& objectName, Handler handler)
{
    QAction* entry = m_actions.value(objectName);
    if (!entry || entry->menu() || !handler) {
        return false;
    }
    m_handlers.insert(objectName, std::move(handler));
    refreshEntries();
    return true;
}

bool MainScreen::setNavigatorHandler(int index, Handler handler)
{
    if (index < 0 || index >= MainNavigator::EntryCount || index == HelpNavigatorIndex ||
        !menuEntryOfNavigator(index).isEmpty() || !handler) {
        return false;
    }
    m_navigatorHandlers[index] = std::move(handler);
    refreshEntries();
    return true;
}

void MainScreen::setHomeWidget(QWidget* widget, const Handler& reload)
{
    if (reload) {
        connect(this, &MainScreen::activated, widget, reload);
    }
    auto* row = static_cast<QHBoxLayout*>(centralWidget()->layout()->itemAt(1)->layout());
    delete row->replaceWidget(m_home, widget);
    m_home->deleteLater();
    m_home = widget;
    row->setStretchFactor(m_home, 1);
}

QString MainScreen::storedUrl(const QString& section, const QString& name) const
{
    return m_session.store().value(section, name);
}

bool MainScreen::isAvailable(const QString& objectName) const
{
    if (!m_handlers.contains(objectName)) {
        return false;
    }
    for (const auto& [name, right] : guardedEntries()) {
        if (name == objectName && !m_session.rights().has(right)) {
            return false;
        }
    }
    if (objectName == UpdateDatabase) {
        return m_session.updateFailed() && !m_updateDatabaseRun;
    }
    if (objectName == QLatin1String("mnuTandrillOnline")) {
        return !storedUrl(QStringLiteral("Web"), QStringLiteral("Site")).isEmpty();
    }
    if (objectName == QLatin1String("mnuContactUs")) {
        return !storedUrl(QStringLiteral("Web"), QStringLiteral("Contact")).isEmpty();
    }
    if (objectName == QLatin1String("mnuCheckForUpdates")) {
        return !storedUrl(QStringLiteral("Web"), QStringLiteral("Host")).isEmpty();
    }
    return true;
}

void MainScreen::refreshEntries()
{
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it) {
        if (!it.value()->menu()) {
            it.value()->setEnabled(isAvailable(it.key()));
        }
    }
    for (int i = 0; i < MainNavigator::EntryCount; ++i) {
        const QString menuEntry = menuEntryOfNavigator(i);
        const bool enabled = i == HelpNavigatorIndex ? true
                             : menuEntry.isEmpty()   ? bool(m_navigatorHandlers[i])
                                                     : isAvailable(menuEntry);
        m_navigator->setEntryEnabled(i, enabled);
    }
}

void MainScreen::runEntry(const QString& objectName)
{
    if (!isAvailable(objectName)) {
        return;
    }
    // Copied: the handler may replace itself while it runs.
    runTrapped(objectName, m_handlers.value(objectName));
    if (objectName == UpdateDatabase) {
        m_updateDatabaseRun = true; // one run; the next start tries again
        refreshEntries();
    }
}

void MainScreen::runNavigator(int index)
{
    if (index == HelpNavigatorIndex) {
        showHelp();
        return;
    }
    const QString menuEntry = menuEntryOfNavigator(index);
    if (!menuEntry.isEmpty()) {
        runEntry(menuEntry);
    } else if (const Handler handler = m_navigatorHandlers[index]) {
        runTrapped(QStringLiteral("lblQuickMenu"), handler);
    }
}

void MainScreen::runTrapped(const QString& entry, const Handler& handler)
{
    // A failure of one entry is reported and the frame goes on; nothing may escape into Qt.
    try {
        handler();
    } catch (const std::exception& failure) {
        errorHandler(m_session, objectName(), entry + QStringLiteral("_Click"), 1,
                     QString::fromLocal8Bit(failure.what()));
    }
}

void MainScreen::restoreSize()
{
    const auto stored = [this](const QString& word, int fallback) {
        bool ok = false;
        const int twips =
            Options::option(m_session, objectName() + word, true).trimmed().toInt(&ok);
        return twipsToPixels(ok && twips > 0 ? twips : fallback);
    };
    resize(stored(QStringLiteral("WIDTH"), DefaultWidthTwips),
           stored(QStringLiteral("HEIGHT"), DefaultHeightTwips));
}

void MainScreen::storeSize()
{
    const int twips = FormPlacement::TwipsPerPixel;
    Options::setOption(m_session, objectName() + QStringLiteral("HEIGHT"),
                       QString::number(height() * twips), true);
    Options::setOption(m_session, objectName() + QStringLiteral("WIDTH"),
                       QString::number(width() * twips), true);
}

void MainScreen::closeEvent(QCloseEvent* event)
{
    HelpWindow::closeAll();
    if (m_storeSizeOnClose) {
        storeSize();
    }
    event->accept();
}

void MainScreen::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        emit activated();
    }
}

void MainScreen::exitNow()
{
    // Exit ends the run at once: the window's size is not kept.
    m_storeSizeOnClose = false;
    hide();
    m_exitHandler();
}

void MainScreen::showHelp()
{
    HelpWindow::openManual(m_session);
}

void MainScreen::showQuickStart()
{
    const QString manual = HelpFiles::quickStartPath(m_session.installation());
    if (!QFileInfo::exists(manual)) {
        m_session.prompter().message(
            QStringLiteral("The quick start manual %1 cannot be found.").arg(manual),
            Prompter::Buttons::Ok, Prompter::Icon::Exclamation);
        return;
    }
    openUrl(QUrl::fromLocalFile(manual));
}

void MainScreen::openStoredUrl(const QString& section, const QString& name)
{
    openUrl(QUrl::fromUserInput(storedUrl(section, name)));
}

void MainScreen::openUrl(const QUrl& url)
{
    if (!m_urlOpener(url)) {
        m_session.prompter().message(
            QStringLiteral("No program on this computer could open %1.").arg(url.toDisplayString()),
            Prompter::Buttons::Ok, Prompter::Icon::Exclamation);
    }
}

void MainScreen::checkForUpdates()
{
    // The document's place on the host is fixed; only the host is the installation's.
    const QUrl url = QUrl::fromUserInput(storedUrl(QStringLiteral("Web"), QStringLiteral("Host")))
                         .resolved(QUrl(QStringLiteral("/setup/LatestUPT/Korvelle.xml")));
    QByteArray document;
    QString error;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool fetched = UpdateCheck::fetch(url, m_updateTimeoutMs, &document, &error);
    QApplication::restoreOverrideCursor();
    if (!fetched) {
        m_session.prompter().message(
            QStringLiteral("Cannot check for updates at %1: %2").arg(url.toDisplayString(), error),
            Prompter::Buttons::Ok, Prompter::Icon::Exclamation);
        return;
    }
    const UpdateCheck::Verdict verdict = UpdateCheck::evaluate(
        document, url, Options::registryValue(m_session, QStringLiteral("Version")));
    switch (verdict.kind) {
    case UpdateCheck::Verdict::Kind::Newer:
        m_session.prompter().inform(verdict.message);
        openUrl(verdict.download);
        break;
    case UpdateCheck::Verdict::Kind::Current:
        m_session.prompter().inform(verdict.message);
        break;
    case UpdateCheck::Verdict::Kind::Invalid:
        m_session.prompter().message(verdict.message, Prompter::Buttons::Ok,
                                     Prompter::Icon::Exclamation);
        break;
    }
}
