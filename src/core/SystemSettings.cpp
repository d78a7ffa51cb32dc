#include "SystemSettings.h"

#include "Options.h"
#include "Prompter.h"
#include "Session.h"

const QString SystemSettings::SecurityChangedMessage =
    QStringLiteral("To enable/disable passwords please close and restart the program");
const QString SystemSettings::InvalidPhoneMessage = QStringLiteral("Invalid phone No.");

namespace {

const QString SecurityKey = QStringLiteral("SECURITYONOFF");

bool isOn(const QString& switchValue)
{
    return switchValue.trimmed() == QLatin1String("1");
}

/** The text options the screen shows, in the order they are saved. */
struct TextOption
{
    const char* key;
    QString SystemSettings::*member;
};
constexpr TextOption TextOptions[] = {
    {"GEN_COMPANY_NAME", &SystemSettings::companyName},
    {"GEN_COMPANY_ADDRESS1", &SystemSettings::companyAddress1},
    {"GEN_COMPANY_ADDRESS2", &SystemSettings::companyAddress2},
    {"GEN_COMPANY_PHONE", &SystemSettings::companyPhone},
    {"GEN_COMPANY_EMAIL", &SystemSettings::companyEmail},
    {"GEN_COMPANY_WEBSITE", &SystemSettings::companyWebSite},
    {"SERVICE_LATE_YELLOW", &SystemSettings::serviceLateYellow},
    {"SERVICE_LATE_RED", &SystemSettings::serviceLateRed},
    {"COUNT_READING_DELAY", &SystemSettings::countReadingDelay},
};

} // namespace

SystemSettings SystemSettings::load(Session& session)
{
    SystemSettings s;
    for (const TextOption& option : TextOptions) {
        s.*option.member = Options::option(session, QString::fromLatin1(option.key));
    }
    s.security = isOn(Options::option(session, SecurityKey));
    for (int i = 0; i < UserFieldCount; ++i) {
        const QString caption =
            Options::option(session, QStringLiteral("UserDefinedField%1").arg(i + 1));
        s.userFields[i] = caption.trimmed().isEmpty() ? defaultUserField(i + 1) : caption;
    }
    return s;
}

QList<std::pair<QString, QString>> SystemSettings::optionRows() const
{
    QList<std::pair<QString, QString>> rows;
    for (const TextOption& option : TextOptions) {
        rows.append({QString::fromLatin1(option.key), this->*option.member});
    }
    rows.append({SecurityKey, security ? QStringLiteral("1") : QStringLiteral("0")});
    for (int i = 0; i < UserFieldCount; ++i) {
        const QString caption = userFields.value(i);
        rows.append({QStringLiteral("UserDefinedField%1").arg(i + 1),
                     caption.trimmed().isEmpty() ? defaultUserField(i + 1) : caption});
    }
    return rows;
}

bool SystemSettings::save(Session& session) const
{
    const bool switchChanged = isOn(Options::option(session, SecurityKey)) != security;
    for (const auto& [key, value] : optionRows()) {
        Options::setOption(session, key, value);
    }
    if (switchChanged) {
        session.prompter().inform(SecurityChangedMessage);
    }
    return switchChanged;
}

QString SystemSettings::defaultUserField(int number)
{
    return QStringLiteral("User Field%1").arg(number);
}

QStringList SystemSettings::defaultUserFields()
{
    QStringList captions;
    for (int i = 1; i <= UserFieldCount; ++i) {
        captions.append(defaultUserField(i));
    }
    return captions;
}

QString SystemSettings::emptyPhone()
{
    return QStringLiteral("(   )    -            ");
}

bool SystemSettings::isValidPhone(const QString& text)
{
    if (text.trimmed().isEmpty() || text == emptyPhone()) {
        return true;
    }
    for (int position = 2; position <= 13; ++position) {
        if (position == 5 || position == 6 || position == 10) {
            continue;
        }
        const QChar c = text.size() >= position ? text.at(position - 1) : QChar();
        if (c < u'0' || c > u'9') {
            return false;
        }
    }
    return true;
}

const QList<SystemSettings::Geometry>& SystemSettings::defaultGeometry()
{
    // Twips; the left of 2180 puts a window beside the main screen's side bar.
    static const QList<Geometry> rows{
        {QStringLiteral("frmCostCenter"), 3825, 6945, 4200, 3840},
        {QStringLiteral("frmCountReading"), 3345, 3825, 2180, 1450},
        {QStringLiteral("frmCrew"), 3810, 7425, 3960, 3855},
        {QStringLiteral("frmEmployee"), 6840, 9900, 2180, 1450},
        {QStringLiteral("frmEquipment"), 7425, 11430, 2180, 1450},
        {QStringLiteral("frmEquipmentReading"), 6720, 8055, 2180, 1450},
        {QStringLiteral("frmEquipmentImage"), 4875, 5265, 2180, 1450},
        {QStringLiteral("frmFilterScreen"), 4590, 5940, -1, -1},
        {QStringLiteral("frmIndicator"), 3720, 9090, 2180, 1450},
        {QStringLiteral("frmInventryCheckIn"), 5460, 8280, 2180, 1450},
        {QStringLiteral("frmItemList"), 5010, 8775, -1, -1},
        {QStringLiteral("frmLocation"), 4275, 7335, 4005, 3615},
        {QStringLiteral("frmMainScreen"), 11190, 15480, -1, -1},
        {QStringLiteral("frmPartManager"), 4965, 9270, 2180, 1450},
        {QStringLiteral("frmQuickFind"), 7050, 9060, 2180, 1450},
        {QStringLiteral("frmServicesManager"), 5055, 9720, 2180, 1450},
        {QStringLiteral("frmSite"), 4830, 7185, 4080, 3345},
        {QStringLiteral("frmSupplier"), 6270, 9990, 2180, 1450},
        {QStringLiteral("frmPart"), 6735, 6810, 4275, 3060},
        {QStringLiteral("frmSendEmail"), 8805, 6975, -1, -1},
        {QStringLiteral("frmServices"), 8175, 10680, 2180, 1450},
        {QStringLiteral("frmWorkorder"), 8400, 9735, 2180, 1450},
        {QStringLiteral("frmServiceTime"), 2940, 3015, 2180, 1450},
        {QStringLiteral("frmServiceDateConfirmation"), 3450, 4035, 2180, 1450},
        {QStringLiteral("frmSetup"), 6150, 7965, -1, -1},
    };
    return rows;
}

void SystemSettings::writeDefaultGeometry(Session& session)
{
    for (const Geometry& g : defaultGeometry()) {
        Options::setOption(session, g.form + QStringLiteral("HEIGHT"), QString::number(g.height),
                           true);
        Options::setOption(session, g.form + QStringLiteral("WIDTH"), QString::number(g.width),
                           true);
        if (g.left >= 0) {
            Options::setOption(session, g.form + QStringLiteral("LEFT"), QString::number(g.left),
                               true);
        }
        if (g.top >= 0) {
            Options::setOption(session, g.form + QStringLiteral("TOP"), QString::number(g.top),
                               true);
        }
    }
}

const QList<SystemSettings::Lookup>& SystemSettings::lookups()
{
    // The screens of their own first, then the fixed lists of tblIndicator by number.
    static const QList<Lookup> all{
        {QStringLiteral("Site"), QStringLiteral("frmSite"), 0},
        {QStringLiteral("Location"), QStringLiteral("frmLocation"), 0},
        {QStringLiteral("Crew"), QStringLiteral("frmCrew"), 0},
        {QStringLiteral("Cost Center"), QStringLiteral("frmCostCenter"), 0},
        {QStringLiteral("Country"), QStringLiteral("frmIndicator"), 1},
        {QStringLiteral("Employee Position"), QStringLiteral("frmIndicator"), 3},
        {QStringLiteral("Equipment Make"), QStringLiteral("frmIndicator"), 7},
        {QStringLiteral("Engine Make"), QStringLiteral("frmIndicator"), 17},
        {QStringLiteral("Engine Model"), QStringLiteral("frmIndicator"), 9},
        {QStringLiteral("Equipment Model"), QStringLiteral("frmIndicator"), 9},
        {QStringLiteral("Equipment Type"), QStringLiteral("frmIndicator"), 4},
        {QStringLiteral("State"), QStringLiteral("frmIndicator"), 11},
        {QStringLiteral("Lease Company"), QStringLiteral("frmIndicator"), 6},
        {QStringLiteral("Part Category"), QStringLiteral("frmIndicator"), 10},
        {QStringLiteral("Vehicle Engine Type"), QStringLiteral("frmIndicator"), 15},
        {QStringLiteral("Vehicle Chassis Type"), QStringLiteral("frmIndicator"), 14},
        {QStringLiteral("Manufacture Type"), QStringLiteral("frmIndicator"), 8},
        {QStringLiteral("Fuel Type"), QStringLiteral("frmIndicator"), 5},
        {QStringLiteral("Vehicle Body Type"), QStringLiteral("frmIndicator"), 13},
        {QStringLiteral("Tire Type"), QStringLiteral("frmIndicator"), 12},
        {QStringLiteral("Vehicle Trans Type"), QStringLiteral("frmIndicator"), 16},
    };
    return all;
}
