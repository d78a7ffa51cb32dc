// The desktop program: starts the session in its fixed order, then puts the
// main screen and the screens of every library together.

#include "AssignCrewScreen.h"
#include "CostCenterScreen.h"
#include "CountReadingScreen.h"
#include "CrewScreen.h"
#include "DateReadingScreen.h"
#include "DesktopStart.h"
#include "EmployeeScreen.h"
#include "EquipmentImageScreen.h"
#include "EquipmentManager.h"
#include "EquipmentReadingScreen.h"
#include "EquipmentScreen.h"
#include "EquipmentServices.h"
#include "IndicatorScreen.h"
#include "InventoryCheckInScreen.h"
#include "LocationScreen.h"
#include "MainCommandLine.h"
#include "MainNavigator.h"
#include "MainScreen.h"
#include "MainScreenshot.h"
#include "MessageBoxPrompter.h"
#include "MessageTexts.h"
#include "OverdueBoardScreen.h"
#include "PartManagerScreen.h"
#include "PartQuickFindScreen.h"
#include "PartScreen.h"
#include "QuickFindScreen.h"
#include "ReportPreviewScreen.h"
#include "ScriptedPrompter.h"
#include "ServiceDateConfirmationScreen.h"
#include "ServiceTimeScreen.h"
#include "ServicesManagerScreen.h"
#include "ServicesScreen.h"
#include "Session.h"
#include "SetupScreen.h"
#include "SiteScreen.h"
#include "SupplierScreen.h"
#include "UserRights.h"
#include "WorkOrderRecording.h"
#include "WorkOrderScreen.h"

#include <QApplication>
#include <QHash>
#include <QTextStream>
#include <QTimer>
#include <array>

namespace {

constexpr int StartFailedExitCode = 1;
constexpr int ScreenshotFailedExitCode = 3;
constexpr int ScreenshotTimeoutMs = 15000;

const QString MainScreenName = QStringLiteral("frmMainScreen");
/** Shown inside the main screen from the start, so nothing needs to open it. */
const QString BoardName = QStringLiteral("frmOverDueWork");

/** Screens that open by name, for --screenshot; each also opens from its menu entries. */
using ScreenCatalogue = QHash<QString, MainScreen::Handler>;
using ShowDetail = QVariant (*)(Session&, RecordScreen::Mode, const QVariant&, QWidget*);

/** The stock screens that are not record screens. */
void wireStockScreens(MainScreen& main, OverdueBoardScreen& board, Session& session,
                      ScreenCatalogue& screens)
{
    const auto openCheckIn = [&session, &main] {
        InventoryCheckInScreen::showInventoryCheckIn(session, &main);
    };
    board.setToolbarHandler(OverdueBoardScreen::InventoryCheckIn, openCheckIn);
    screens.insert(QStringLiteral("frmInventryCheckIn"), openCheckIn);
    screens.insert(QStringLiteral("frmPartManager"), [&session, &main] {
        QString none;
        PartManagerScreen::showPartManager(session, &none, false, &main);
    });
}

/** The Equipment menu's date readings; the menu keeps them off without their rights. */
void wireDateReadings(MainScreen& main, Session& session, ScreenCatalogue& screens)
{
    const auto open = [&session, &main](DateReadings::Kind kind) {
        return
            [&session, &main, kind] { DateReadingScreen::showDateReading(session, kind, &main); };
    };
    main.setHandler(QStringLiteral("munInspectiondate"), open(DateReadings::Kind::Inspection));
    main.setHandler(QStringLiteral("munLicenseDate"), open(DateReadings::Kind::License));
    screens.insert(QStringLiteral("frmInspectionDateReading"),
                   open(DateReadings::Kind::Inspection));
    screens.insert(QStringLiteral("frmLicenseDateReading"), open(DateReadings::Kind::License));
}

/**
 * The dialogs a machine opens from elsewhere, for pictures only: they open on
 * the first machine by unit number. Their real openers are the equipment
 * screen and the overdue work board.
 */
void wireMachineDialogs(MainScreen& main, Session& session, ScreenCatalogue& screens)
{
    const auto onFirstMachine = [&session, &main](auto show) {
        return [&session, &main, show] {
            const Rows machines = EquipmentManager(session).list();
            if (!machines.isEmpty()) {
                show(session, machines.first().value(QStringLiteral("EquipmentID")).toLongLong(),
                     &main);
            }
        };
    };
    screens.insert(QStringLiteral("frmCountReading"),
                   onFirstMachine(&CountReadingScreen::showCountReadingForm));
    screens.insert(QStringLiteral("frmEquipmentImage"),
                   onFirstMachine(&EquipmentImageScreen::showEquipmentImageDetail));
    screens.insert(QStringLiteral("frmAssignCrew"),
                   onFirstMachine(&AssignCrewScreen::showAssignCrew));
}

/**
 * The date confirmation of a post, for its picture only: on the first service of the
 * first machine, completed today. Posting itself asks it while it runs.
 */
void wirePostingDialogs(MainScreen& main, Session& session, ScreenCatalogue& screens)
{
    screens.insert(QStringLiteral("frmServiceDateConfirmation"), [&session, &main] {
        const Rows machines = EquipmentManager(session).list();
        const Rows services =
            machines.isEmpty()
                ? Rows()
                : EquipmentServices(session).rows(
                      machines.first().value(QStringLiteral("EquipmentID")).toLongLong());
        if (!services.isEmpty()) {
            ServiceDateConfirmationScreen::showServiceDateConfirmationForm(
                session, session.today(),
                services.first().value(QStringLiteral("ServiceUsedID")).toLongLong(), &main);
        }
    });
}

/**
 * The work order screen, on its print tab or its recording tab, from the menu, the
 * toolbars and the board's rows; and the time dialog of a line, which the equipment
 * history opens too.
 */
void wireWorkOrders(MainScreen& main, OverdueBoardScreen& board, Session& session,
                    ScreenCatalogue& screens)
{
    const auto print = [&session, &main](const QString& unitNo) {
        WorkOrderScreen::showPrintWorkorder(session, unitNo, &main);
    };
    const auto record = [&session, &main](qint64 workOrderNo) {
        WorkOrderScreen::showCompleteWorkorder(session, workOrderNo, &main);
    };
    main.setHandler(QStringLiteral("mnuPrintWO"), [print] { print(QString()); });
    main.setHandler(QStringLiteral("mnuRecordWork"), [record] { record(0); });
    board.setToolbarHandler(OverdueBoardScreen::PrintWorkOrders, [print] { print(QString()); });
    board.setToolbarHandler(OverdueBoardScreen::RecordWorkOrder, [record] { record(0); });
    board.setLinkHandlers(print, record);
    screens.insert(QStringLiteral("frmWorkorder"), [print] { print(QString()); });

    EquipmentScreen::setHistoryTimeDialog(&ServiceTimeScreen::showServiceTimeForm);
    // For its picture only: the first line of the newest open work order.
    screens.insert(QStringLiteral("frmServiceTime"), [&session, &main] {
        WorkOrderRecording recording(session);
        const QList<WorkOrderRecording::Order> orders = recording.openOrders();
        const QList<WorkOrderRecording::Line> lines =
            orders.isEmpty() ? QList<WorkOrderRecording::Line>()
                             : recording.lines(orders.first().workOrderNo);
        if (!lines.isEmpty()) {
            const WorkOrderRecording::Line& line = lines.first();
            ServiceTimeScreen::showServiceTimeForm(session, line.lineId,
                                                   {ServiceTime::stored(line.startTime),
                                                    ServiceTime::stored(line.endTime),
                                                    ServiceTime::stored(line.workHours)},
                                                   QString(), &main);
        }
    });
}

/**
 * Meter readings. Record Count reads one machine: the machine is found
 * first, as the navigator's Equipment entry finds it. The count sheet
 * opens from the toolbar, and tells a user without the right why not.
 */
void wireReadings(MainScreen& main, OverdueBoardScreen& board, Session& session,
                  ScreenCatalogue& screens)
{
    main.setHandler(QStringLiteral("mnuRecordCount"), [&session, &main] {
        const QString machine = QuickFindScreen::showQuickFind(
            session, QStringLiteral("tblEquipment"), QStringLiteral("UnitNo"),
            QStringLiteral("Unit No"), QStringLiteral("frmCountReading"), {}, &main);
        if (!machine.isEmpty()) {
            CountReadingScreen::showCountReadingForm(session, machine.toLongLong(), &main);
        }
    });
    const auto openSheet = [&session, &main] {
        EquipmentReadingScreen::showEquipmentReading(session, &main);
    };
    board.setToolbarHandler(OverdueBoardScreen::EquipmentReading, [&session, openSheet] {
        if (session.rights().has(UserRights::EqCountSheet)) {
            openSheet();
        } else {
            session.prompter().inform(MessageTexts::NoReportRights);
        }
    });
    screens.insert(QStringLiteral("frmEquipmentReading"), openSheet);
}

/**
 * The navigator's finders: a quick find, then the record screen on the record
 * chosen; "Add New" in the quick find opens that screen on a new record.
 */
void wireFinders(MainScreen& main, OverdueBoardScreen& board, Session& session,
                 ScreenCatalogue& screens)
{
    using Finder = std::function<QString(const QuickFindScreen::AddOpener&)>;
    const auto findThenShow = [&session, &main](Finder find, ShowDetail show) {
        return [&session, &main, find, show] {
            const QString key = find([&session, show](QWidget* parent) {
                show(session, RecordScreen::Mode::Add, {}, parent);
            });
            if (!key.isEmpty()) {
                show(session, RecordScreen::Mode::Browse, key, &main);
            }
        };
    };
    const auto quickFind = [&session, &main](const char* table, const char* field,
                                             const char* caption, const char* formName) {
        return [&session, &main, table, field, caption,
                formName](const QuickFindScreen::AddOpener& add) {
            return QuickFindScreen::showQuickFind(
                session, QString::fromLatin1(table), QString::fromLatin1(field),
                QString::fromLatin1(caption), QString::fromLatin1(formName), {}, &main, add);
        };
    };
    main.setNavigatorHandler(
        MainNavigator::Suppliers,
        findThenShow(quickFind("tblSupplier", "Name", "Supplier Name", "frmSupplier"),
                     &SupplierScreen::showSupplierDetail));
    main.setNavigatorHandler(
        MainNavigator::Employees,
        findThenShow(quickFind("tblEmployee", "EmployeeID", "Employee Number", "frmEmployee"),
                     &EmployeeScreen::showEmployeeDetail));
    main.setNavigatorHandler(MainNavigator::PartInventory,
                             findThenShow(
                                 [&session, &main](const QuickFindScreen::AddOpener& add) {
                                     return PartQuickFindScreen::showPartQuickFind(session, &main,
                                                                                   add);
                                 },
                                 &PartScreen::showPartDetail));
    const auto findEquipment =
        findThenShow(quickFind("tblEquipment", "UnitNo", "Unit No", "frmEquipment"),
                     &EquipmentScreen::showEquipmentDetail);
    main.setNavigatorHandler(MainNavigator::Equipment, findEquipment);
    board.setToolbarHandler(OverdueBoardScreen::Find, findEquipment);
    screens.insert(
        QStringLiteral("frmQuickFind"),
        [find = quickFind("tblEquipment", "UnitNo", "Unit No", "frmEquipment")] { find({}); });
    screens.insert(QStringLiteral("frmPartQuickFind"),
                   [&session, &main] { PartQuickFindScreen::showPartQuickFind(session, &main); });
}

/**
 * Wires the menu and the navigator to the screens of the other libraries.
 * Each screen goes in twice: main.setHandler("mnuX", opener) for its menu
 * entry (main.setNavigatorHandler(i, opener) for a navigator entry), and
 * screens.insert("frmX", opener) so that a picture of it can be taken.
 * An entry left unwired stays disabled.
 */
ScreenCatalogue wireScreens(MainScreen& main, OverdueBoardScreen& board, Session& session)
{
    ScreenCatalogue screens;
    const auto opener = [&session](ShowDetail show, RecordScreen::Mode mode) {
        return [&session, show, mode](QWidget* parent) { show(session, mode, 0, parent); };
    };
    struct Lookup
    {
        QString button; ///< its caption on the setup screen
        QString screen;
        ShowDetail show;
    };
    const std::array<Lookup, 4> lookups{{
        {QStringLiteral("Site"), QStringLiteral("frmSite"), &SiteScreen::showSiteDetail},
        {QStringLiteral("Location"), QStringLiteral("frmLocation"),
         &LocationScreen::showLocationDetail},
        {QStringLiteral("Crew"), QStringLiteral("frmCrew"), &CrewScreen::showCrewDetail},
        {QStringLiteral("Cost Center"), QStringLiteral("frmCostCenter"),
         &CostCenterScreen::showCostCenterDetail},
    }};
    const auto openIndicator = [&session](QWidget* parent, int listNumber) {
        IndicatorScreen::showIndicatorDetail(session, listNumber, {}, {}, false, parent);
    };
    const auto openSetup = [&session, &main, lookups, opener, openIndicator] {
        SetupScreen setup(session, &main);
        for (const Lookup& lookup : lookups) {
            setup.setLookupOpener(lookup.button, opener(lookup.show, RecordScreen::Mode::Browse));
        }
        setup.setIndicatorOpener(openIndicator);
        // Both model lists are list 9; engine models hang under the engine makes.
        setup.setLookupOpener(QStringLiteral("Engine Model"), [&session](QWidget* parent) {
            IndicatorScreen::showIndicatorDetail(session, IndicatorList::Model, {}, {}, true,
                                                 parent);
        });
        setup.exec();
    };
    // With no list the screen offers every list.
    screens.insert(QStringLiteral("frmIndicator"),
                   [openIndicator, &main] { openIndicator(&main, 0); });
    for (const Lookup& lookup : lookups) {
        screens.insert(lookup.screen, [open = opener(lookup.show, RecordScreen::Mode::Browse),
                                       &main] { open(&main); });
    }
    const auto onMain = [opener, &main](ShowDetail show, RecordScreen::Mode mode) {
        return [open = opener(show, mode), &main] { open(&main); };
    };
    // The View and Add menus open the same screen, browsing or on a new record.
    const auto wireViewAndAdd = [&main, &screens, onMain](const QString& screen, ShowDetail show,
                                                          const QString& entry) {
        main.setHandler(QStringLiteral("mnuView") + entry,
                        onMain(show, RecordScreen::Mode::Browse));
        main.setHandler(QStringLiteral("mnuAdd") + entry, onMain(show, RecordScreen::Mode::Add));
        screens.insert(screen, onMain(show, RecordScreen::Mode::Browse));
    };
    wireViewAndAdd(QStringLiteral("frmSupplier"), &SupplierScreen::showSupplierDetail,
                   QStringLiteral("Supplier"));
    wireViewAndAdd(QStringLiteral("frmEmployee"), &EmployeeScreen::showEmployeeDetail,
                   QStringLiteral("Employee"));
    wireViewAndAdd(QStringLiteral("frmPart"), &PartScreen::showPartDetail, QStringLiteral("Part"));
    board.setToolbarHandler(OverdueBoardScreen::AddNewPart,
                            onMain(&PartScreen::showPartDetail, RecordScreen::Mode::Add));
    wireViewAndAdd(QStringLiteral("frmServices"), &ServicesScreen::showServicesDetail,
                   QStringLiteral("Service"));
    // The navigator's "Services" follows mnuViewService.
    screens.insert(QStringLiteral("frmServicesManager"), [&session, &main] {
        ServicesManagerScreen::pickServices(session, {}, 0, &main);
    });
    // The View menu's entry keeps its old spelling, so it is wired by hand.
    main.setHandler(QStringLiteral("mnuViewEqipment"),
                    onMain(&EquipmentScreen::showEquipmentDetail, RecordScreen::Mode::Browse));
    main.setHandler(QStringLiteral("mnuAddEquipment"),
                    onMain(&EquipmentScreen::showEquipmentDetail, RecordScreen::Mode::Add));
    screens.insert(QStringLiteral("frmEquipment"),
                   onMain(&EquipmentScreen::showEquipmentDetail, RecordScreen::Mode::Browse));
    EquipmentScreen::setPartPicker([&session](QString* excludeInOut, QWidget* parent) {
        return PartManagerScreen::showPartManager(session, excludeInOut, true, parent);
    });
    EquipmentScreen::setServiceHooks(
        {[](Session& session, qint64 equipmentId, const QList<qint64>& excluded, QWidget* parent) {
             return ServicesManagerScreen::pickServices(session, excluded, equipmentId, parent)
                 .value_or(ServicePick{});
         },
         &ServicesScreen::showServiceUsedDetail,
         [](Session& session, qint64 equipmentId, QWidget* parent) {
             CountReadingScreen::showCountReadingForm(session, equipmentId, parent);
         },
         &CountReadingScreen::serviceCountAsker});
    main.setHandler(QStringLiteral("mnuSetup"), openSetup);
    screens.insert(QStringLiteral("frmSetup"), openSetup);
    const auto report = [&session, &main](const QString& procedure) {
        return [&session, &main, procedure] {
            ReportPreviewScreen::showReport(session, procedure, {}, &main);
        };
    };
    main.setHandler(QStringLiteral("mnuServiceList"), report(QStringLiteral("ShowServiceList")));
    main.setHandler(QStringLiteral("mnuErrorReport"), report(QStringLiteral("ShowErrorList")));
    // The equipment list waits for its filter screen on the menu; the picture shows it whole.
    screens.insert(QStringLiteral("frmReportPreview"),
                   report(QStringLiteral("ShowEquipmentListDetail")));
    wireStockScreens(main, board, session, screens);
    wireMachineDialogs(main, session, screens);
    wirePostingDialogs(main, session, screens);
    wireDateReadings(main, session, screens);
    wireFinders(main, board, session, screens);
    wireReadings(main, board, session, screens);
    wireWorkOrders(main, board, session, screens);
    return screens;
}

int fail(Prompter& prompter, const QString& text, int exitCode)
{
    prompter.message(text, Prompter::Buttons::Ok, Prompter::Icon::Critical);
    return exitCode;
}

/** Takes the picture asked for on the command line and ends the run with its outcome. */
int takeScreenshot(QApplication& app, Prompter& prompter, const MainCommandLine& line,
                   const ScreenCatalogue& screens)
{
    const QString name = line.screenshotScreen;
    const QString window = MainScreenshot::windowName(name);
    const bool withMain = window == MainScreenName || window == BoardName;
    if (!withMain && !screens.contains(window)) {
        return fail(prompter, QStringLiteral("No screen named %1 can be opened.").arg(name),
                    MainCommandLine::UsageExitCode);
    }
    MainScreenshot::captureWhenShown(
        name, line.screenshotFile, ScreenshotTimeoutMs, [&prompter](bool ok, const QString& error) {
            if (!ok) {
                prompter.message(error, Prompter::Buttons::Ok, Prompter::Icon::Critical);
            }
            QCoreApplication::exit(ok ? 0 : ScreenshotFailedExitCode);
        });
    if (!withMain) {
        QTimer::singleShot(0, &app, screens.value(window));
    }
    return app.exec();
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tandrill"));
    QApplication::setApplicationVersion(QStringLiteral(TANDRILL_VERSION));

    // Without a display nobody can answer a dialog: messages go to stderr and questions take No.
    QTextStream errors(stderr);
    ScriptedPrompter printed(&errors);
    printed.setDefaultAnswer(Prompter::Answer::No);
    MessageBoxPrompter boxes;
    const bool headless = QGuiApplication::platformName() == QLatin1String("offscreen");
    Prompter& prompter = headless ? static_cast<Prompter&>(printed) : boxes;

    const MainCommandLine line = MainCommandLine::parse(QApplication::arguments());
    if (line.helpRequested || line.versionRequested) {
        QTextStream(stdout) << (line.helpRequested
                                    ? line.helpText
                                    : QStringLiteral("tandrill " TANDRILL_VERSION "\n"));
        return 0;
    }
    if (!line.error.isEmpty()) {
        return fail(prompter, line.error, MainCommandLine::UsageExitCode);
    }

    const Installation installation(Installation::resolveHome(line.home));
    if (!installation.isInstalled()) {
        return fail(prompter,
                    QStringLiteral("There is no Korvelle installation in %1.\n"
                                   "Make one with \"tandrill-cli --home %1 init\", or start "
                                   "scripts/run for a demonstration installation.")
                        .arg(installation.home()),
                    StartFailedExitCode);
    }
    Session session(installation, prompter);
    if (line.today.isValid()) {
        session.clock().setToday(line.today);
    }
    QString error;
    if (!session.loadStore(&error)) {
        return fail(prompter,
                    QStringLiteral("The settings of the installation in %1 cannot be read: %2")
                        .arg(installation.home(), error),
                    StartFailedExitCode);
    }

    DesktopStart start(session, headless, errors);
    if (!start.run()) {
        return StartFailedExitCode;
    }

    MainScreen main(session);
    // The board is the home view; it reloads whenever the main window is active again.
    auto* board = new OverdueBoardScreen(session);
    main.setHomeWidget(board, [board] { board->loadData(); });
    main.setNavigatorHandler(MainNavigator::Reports,
                             [board] { board->loadUnloadReportsNavigator(); });
    const ScreenCatalogue screens = wireScreens(main, *board, session);
    main.show();
    if (line.wantsScreenshot()) {
        return takeScreenshot(app, prompter, line, screens);
    }
    return app.exec();
}
