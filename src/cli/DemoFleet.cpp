#include "DemoFleet.h"

#include "BatchInsert.h"
#include "DataHelpers.h"
#include "EquipmentServices.h"
#include "MeterReadings.h"
#include "NextDateCalculator.h"
#include "ScheduleCodes.h"
#include "Session.h"
#include "Sql.h"
#include "SqlValue.h"
#include "Transaction.h"

#include <QSqlError>
#include <QSqlQuery>
#include <algorithm>

namespace {

constexpr quint32 Seed = 20240115;
constexpr int WeeksOfReadings = 3 * 52;
constexpr double LaborCostPerHour = 46.5;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QVariant nullNumber()
{
    return QVariant(QMetaType::fromType<qlonglong>());
}

// The fixed lists by number, and the items of the lists that stand alone.
struct PlainList
{
    int number;
    const char* items[9];
};

const PlainList PlainLists[] = {
    {3, {"Crew Leader", "Mechanic", "Equipment Operator", "Groundskeeper"}},
    {5, {"Diesel", "Gasoline", "Propane", "Electric"}},
    {6, {"Cascade Equipment Leasing", "Northwest Fleet Finance"}},
    {8, {"OEM", "Aftermarket"}},
    {10,
     {"Filters", "Belts", "Blades", "Lubricants", "Tires", "Electrical", "Hydraulics",
      "Bearings & Seals", "Brakes"}},
    {12, {"Turf", "All-terrain", "Highway"}},
    {13, {"Pickup", "Flatbed", "Dump"}},
    {14, {"Light Duty", "Medium Duty"}},
    {15, {"Inline 4", "V8", "Turbo Diesel"}},
    {16, {"Automatic", "Manual", "Hydrostatic"}},
};

struct Country
{
    const char* name;
    const char* states[4];
};

const Country Countries[] = {
    {"United States", {"Oregon", "Washington", "California", "Idaho"}},
    {"Canada", {"British Columbia", "Québec", "Ontario"}},
};

struct EngineMake
{
    const char* name;
    const char* models[2];
};

const EngineMake EngineMakes[] = {
    {"Kestrel Power", {"KP-22 V-Twin", "KP-27 V-Twin"}},
    {"Ironbark Diesel", {"ID-1.8", "ID-3.3T"}},
    {"Vantor", {"V-6.2", "V-2.7T"}},
};

enum class Meter { Hours, Miles, Counts };

struct MakeModels
{
    const char* make;
    const char* models[2];
};

struct MachineKind
{
    const char* type;
    const char* unitPrefix;
    int count;
    MakeModels makes[2];
    const char* capacity;
    const char* engineMake;
    const char* fuel;
    double cost;
    int lifeYears;
    Meter meter;
    int weeklyUse;
    bool seasonal;
    const char* services[12];
    const char* fittingParts[3];
};

// clang-format off
const MachineKind Kinds[] = {
    {.type = "Zero-Turn Mower", .unitPrefix = "ZT", .count = 10,
     .makes = {{"Marwick", {"ZT-52", "ZT-61"}}, {"Greenhollow", {"GX 48", "GX 60"}}},
     .capacity = "52 in deck", .engineMake = "Kestrel Power", .fuel = "Gasoline",
     .cost = 11800, .lifeYears = 6, .meter = Meter::Hours, .weeklyUse = 24, .seasonal = true,
     .services = {"S-101", "S-102", "S-107", "S-108", "S-110", "S-112", "S-201", "S-206",
                  "S-207", "S-208"},
     .fittingParts = {"BL-52HI", "BT-A48", "OF-2210"}},
    {.type = "Wide-Area Mower", .unitPrefix = "WM", .count = 5,
     .makes = {{"Marwick", {"WAM-11", "WAM-16"}}, {"Brackley", {"Fairway 4000", "Fairway 5200"}}},
     .capacity = "11 ft cut", .engineMake = "Ironbark Diesel", .fuel = "Diesel",
     .cost = 64500, .lifeYears = 8, .meter = Meter::Hours, .weeklyUse = 22, .seasonal = true,
     .services = {"S-101", "S-102", "S-104", "S-107", "S-108", "S-110", "S-201", "S-202",
                  "S-206", "S-208"},
     .fittingParts = {"BL-61HI", "HF-7700", "OF-5530"}},
    {.type = "Compact Tractor", .unitPrefix = "CT", .count = 6,
     .makes = {{"Oakhurst", {"CT-25", "CT-40"}}, {"Tallis", {"T-3032", "T-4045"}}},
     .capacity = "Category 1 hitch", .engineMake = "Ironbark Diesel", .fuel = "Diesel",
     .cost = 32900, .lifeYears = 10, .meter = Meter::Hours, .weeklyUse = 9, .seasonal = false,
     .services = {"S-104", "S-106", "S-107", "S-108", "S-111", "S-113", "S-201", "S-202",
                  "S-206", "S-207"},
     .fittingParts = {"HF-7700", "OF-5530", "BA-12V35"}},
    {.type = "Pickup Truck", .unitPrefix = "PU", .count = 8,
     .makes = {{"Halden Motors", {"H-150", "H-250"}}, {"Corvane", {"Summit 2500", "Summit 3500"}}},
     .capacity = "3/4 ton", .engineMake = "Vantor", .fuel = "Gasoline",
     .cost = 48700, .lifeYears = 8, .meter = Meter::Miles, .weeklyUse = 420, .seasonal = false,
     .services = {"S-103", "S-105", "S-110", "S-111", "S-113", "S-114", "S-115", "S-203",
                  "S-209", "S-216"},
     .fittingParts = {"TR-LT265", "OF-5530", "BR-PAD4"}},
    {.type = "Utility Trailer", .unitPrefix = "TR", .count = 6,
     .makes = {{"Pennock Trailers", {"PT-7 Single", "PT-12 Tandem"}},
               {"Pennock Trailers", {"PT-12 Tandem", "PT-7 Single"}}},
     .capacity = "7000 lb GVWR", .engineMake = nullptr, .fuel = nullptr,
     .cost = 6900, .lifeYears = 15, .meter = Meter::Counts, .weeklyUse = 6, .seasonal = false,
     .services = {"S-103", "S-111", "S-113", "S-114", "S-205", "S-211"},
     .fittingParts = {"WB-1000", "TR-2310"}},
    {.type = "Utility Vehicle", .unitPrefix = "UV", .count = 5,
     .makes = {{"Tallis", {"UV-4", "UV-6 Crew"}}, {"Oakhurst", {"Runabout 2", "Runabout 4"}}},
     .capacity = "1000 lb bed", .engineMake = "Kestrel Power", .fuel = "Gasoline",
     .cost = 14200, .lifeYears = 7, .meter = Meter::Hours, .weeklyUse = 11, .seasonal = false,
     .services = {"S-101", "S-106", "S-108", "S-110", "S-111", "S-113", "S-201", "S-206",
                  "S-208"},
     .fittingParts = {"OF-2210", "BA-12V35", "SP-RN14"}},
};
// clang-format on

struct Site
{
    const char* name;
    const char* address;
    const char* city;
    const char* state;
    const char* zip;
    const char* locations[3];
};

const Site Sites[] = {
    {"Riverside Depot",
     "1420 NE Marine Dr",
     "Portland",
     "Oregon",
     "97211",
     {"Main Shed", "Wash Bay", "Fuel Island"}},
    {"Eastgate Yard",
     "8801 E Trent Ave",
     "Spokane",
     "Washington",
     "99212",
     {"North Compound", "Shop Bay 2"}},
    {"Parc Saint-Laurent",
     "455 rue de l'Église",
     "Montréal",
     "Québec",
     "H4N 1J2",
     {"Garage municipal", "Cour arrière"}},
};
constexpr int CanadianSite = 2;

struct Crew
{
    int number;
    const char* description;
};

const Crew Crews[] = {{101, "North Grounds"},
                      {102, "East Grounds"},
                      {103, "Saint-Laurent Grounds"},
                      {104, "Fleet Shop"}};
constexpr int ShopCrew = 3;

struct CostCenter
{
    const char* description;
    double budget;
};

const CostCenter CostCenters[] = {
    {"Grounds Maintenance", 250000}, {"Fleet Operations", 180000}, {"Sports Fields", 90000}};

struct Employee
{
    const char* id;
    const char* first;
    const char* initial;
    const char* last;
    const char* gender;
    int crew;
    const char* position;
    double laborCost;
    const char* skills;
};

const Employee Employees[] = {
    {"E1001", "Dana", "R", "Whitfield", "Female", 0, "Crew Leader", 34.5,
     "Irrigation, pesticide licence"},
    {"E1002", "Marcus", "J", "O'Brien", "Male", 0, "Equipment Operator", 27.0, "Wide-area mowers"},
    {"E1003", "Priya", "", "Raman", "Female", 0, "Groundskeeper", 24.5, "Turf care"},
    {"E1004", "Tomás", "A", "Herrera", "Male", 1, "Crew Leader", 33.0, "Arborist, chainsaw"},
    {"E1005", "Keisha", "L", "Dunmore", "Female", 1, "Equipment Operator", 26.5,
     "Compact tractors"},
    {"E1006", "Wen", "", "Zhao", "Male", 1, "Groundskeeper", 24.0, "Hardscape"},
    {"E1007", "Zoë", "M", "Lefèvre", "Female", 2, "Crew Leader", 35.0,
     "Sports fields, \"line marking\""},
    {"E1008", "José", "", "Núñez", "Male", 2, "Equipment Operator", 27.5, "Mowers, trailers"},
    {"E1009", "Étienne", "P", "Gagnon", "Male", 2, "Groundskeeper", 24.0, "Snow removal"},
    {"E1010", "Ruth", "A", "McAllister", "Female", 3, "Mechanic", 39.0,
     "Diesel engines, hydraulics"},
    {"E1011", "Sam", "", "Okafor", "Male", 3, "Mechanic", 37.5, "Small engines, welding"},
    {"E1012", "Lena", "K", "Brandt", "Female", 3, "Crew Leader", 41.0, "Fleet planning"},
};

struct Supplier
{
    const char* name;
    const char* city;
    const char* state;
    const char* zip;
    const char* contact;
    const char* email;
    const char* terms;
    double creditLimit;
};

const Supplier Suppliers[] = {
    {"Cascade Turf Supply", "Portland", "Oregon", "97217", "Holly Jensen",
     "orders@cascadeturf.example", "Net 30", 25000},
    {"Northwest Filters & Belts", "Tacoma", "Washington", "98421", "Greg Paulsen",
     "sales@nwfilters.example", "Net 30", 10000},
    {"Halden Motors Service", "Spokane", "Washington", "99202", "Alicia Moreno",
     "fleet@haldenservice.example", "Net 15", 40000},
    {"Lefèvre Pièces Inc.", "Montréal", "Québec", "H2X 1Y4", "Chantal Lefèvre",
     "commandes@lefevrepieces.example", "Net 45", 15000},
    {"Ironbark Power Parts", "Boise", "Idaho", "83709", "Dwayne Carter", "parts@ironbark.example",
     "Net 30", 20000},
};

struct Part
{
    const char* id;
    const char* description;
    const char* category;
    double price;
    int supplier;
    int quantity;
    int qtyMin;
    int qtyMax;
    const char* bin;
};

const Part Parts[] = {
    {"OF-2210", "Engine oil filter, small engine", "Filters", 8.95, 1, 24, 10, 40, "A-01"},
    {"OF-5530", "Engine oil filter, diesel", "Filters", 14.50, 1, 12, 6, 24, "A-02"},
    {"AF-1180", "Air filter element", "Filters", 22.40, 1, 9, 6, 20, "A-03"},
    {"FF-0420", "Fuel filter, inline", "Filters", 6.75, 1, 30, 10, 50, "A-04"},
    {"HF-7700", "Hydraulic filter cartridge", "Hydraulics", 38.00, 4, 3, 4, 12, "B-01"},
    {"HO-0020", "Hydraulic oil, 20 L pail", "Hydraulics", 96.00, 4, 5, 2, 8, "B-02"},
    {"EO-1040", "Engine oil 10W-40, 1 qt", "Lubricants", 5.25, 0, 120, 48, 200, "C-01"},
    {"EO-1530", "Diesel engine oil 15W-40, 1 gal", "Lubricants", 24.99, 0, 18, 12, 36, "C-02"},
    {"GR-0100", "Multipurpose grease cartridge", "Lubricants", 7.10, 0, 40, 12, 60, "C-03"},
    {"BL-52HI", "Mower blade, 52\" deck, high-lift", "Blades", 31.50, 0, 16, 9, 30, "D-01"},
    {"BL-61HI", "Mower blade, 61\" deck, high-lift", "Blades", 34.75, 0, 6, 9, 24, "D-02"},
    {"BT-A48", "Deck drive belt A48", "Belts", 27.30, 1, 8, 4, 12, "D-03"},
    {"BT-PTO2", "PTO belt, tractor", "Belts", 41.00, 1, 2, 2, 6, "D-04"},
    {"TR-2310", "Turf tire 23x10.50-12", "Tires", 89.00, 0, 4, 2, 8, "E-01"},
    {"TR-LT265", "Light truck tire LT265/75R16", "Tires", 189.00, 2, 8, 4, 12, "E-02"},
    {"BA-12V35", "Battery 12 V, 35 Ah", "Electrical", 109.00, 4, 3, 2, 6, "F-01"},
    {"SP-RN14", "Spark plug, resistor type", "Electrical", 3.95, 1, 60, 20, 100, "F-02"},
    {"WB-1000", "Wheel bearing kit, trailer axle", "Bearings & Seals", 44.60, 3, 6, 4, 12, "G-01"},
    {"BR-PAD4", "Brake pad set, front", "Brakes", 72.80, 2, 4, 2, 8, "G-02"},
};

struct PartUse
{
    const char* part;
    double quantity;
};

// Months January first, weeks 1 to 5, days Sunday first: "1" selects.
struct Service
{
    const char* jobNo;
    const char* name;
    bool shopWork;
    const char* period;
    int interval;
    const char* renewal;
    bool separateWo = false;
    double laborHours;
    const char* months;
    const char* weeks;
    const char* days;
    bool dom = false;
    int domList[5] = {};
    const char* note;
    PartUse parts[2] = {};
};

const char* const AllMonths = "111111111111";
const char* const AllWeeks = "11111";
const char* const AllDays = "1111111";
const char* const Weekdays = "0111110";

// clang-format off
const Service Services[] = {
    {.jobNo = "S-101", .name = "Daily pre-start inspection", .shopWork = false,
     .period = "D", .interval = 1, .renewal = "W", .laborHours = 0.25,
     .months = AllMonths, .weeks = AllWeeks, .days = Weekdays,
     .note = "Walk-around: tires, guards, fluid levels, safety interlocks."},
    {.jobNo = "S-102", .name = "Blade sharpening and balance", .shopWork = false,
     .period = "W", .interval = 1, .renewal = "S", .laborHours = 0.75,
     .months = "000111111100", .weeks = AllWeeks, .days = "0100000",
     .note = "Mowing season only (April to October), Mondays.",
     .parts = {{"GR-0100", 1}}},
    {.jobNo = "S-103", .name = "Monthly safety walk-around", .shopWork = true,
     .period = "M", .interval = 1, .renewal = "S", .laborHours = 0.5,
     .months = AllMonths, .weeks = "10000", .days = "0010000",
     .note = "First Tuesday of the month: lights, hitch, chains, brakes."},
    {.jobNo = "S-104", .name = "Hydraulic system inspection", .shopWork = true,
     .period = "M", .interval = 3, .renewal = "W", .laborHours = 1.5,
     .months = AllMonths, .weeks = AllWeeks, .days = Weekdays,
     .note = "Hoses, fittings, cylinder seals; top up as needed.",
     .parts = {{"HO-0020", 0.25}}},
    {.jobNo = "S-105", .name = "Annual safety and emissions inspection", .shopWork = true,
     .period = "Y", .interval = 1, .renewal = "S", .separateWo = true, .laborHours = 2.0,
     .months = AllMonths, .weeks = AllWeeks, .days = Weekdays,
     .note = "State inspection; book the station's slot, \"bring the registration\"."},
    {.jobNo = "S-106", .name = "Battery and charging check", .shopWork = true,
     .period = "D", .interval = 7, .renewal = "S", .laborHours = 0.3,
     .months = "000000000000", .weeks = "00000", .days = "0000000",
     .dom = true, .domList = {1, 15, 0, 0, 0},
     .note = "On the 1st and 15th of each month."},
    {.jobNo = "S-107", .name = "Winterization", .shopWork = true,
     .period = "Y", .interval = 1, .renewal = "S", .separateWo = true, .laborHours = 3.0,
     .months = "000000000010", .weeks = "11000", .days = Weekdays,
     .note = "Early November: stabilise fuel, fog cylinders, grease all points.",
     .parts = {{"FF-0420", 1}, {"SP-RN14", 2}}},
    {.jobNo = "S-108", .name = "Grease all fittings", .shopWork = false,
     .period = "W", .interval = 1, .renewal = "W", .laborHours = 0.5,
     .months = AllMonths, .weeks = AllWeeks, .days = "0000010",
     .note = "Fridays: every zerk until fresh grease shows.",
     .parts = {{"GR-0100", 0.5}}},
    {.jobNo = "S-110", .name = "Air filter inspection", .shopWork = false,
     .period = "M", .interval = 1, .renewal = "W", .laborHours = 0.25,
     .months = AllMonths, .weeks = AllWeeks, .days = Weekdays,
     .note = "Tap out or replace when the element is dark.",
     .parts = {{"AF-1180", 0.25}}},
    {.jobNo = "S-111", .name = "Tire and wheel check", .shopWork = false,
     .period = "W", .interval = 2, .renewal = "S", .laborHours = 0.25,
     .months = AllMonths, .weeks = AllWeeks, .days = "0010000",
     .note = "Every other Tuesday: pressure, lug nuts, tread."},
    {.jobNo = "S-112", .name = "Deck belt inspection", .shopWork = false,
     .period = "M", .interval = 1, .renewal = "W", .laborHours = 0.3,
     .months = "000111111100", .weeks = AllWeeks, .days = Weekdays,
     .note = "Mowing season: cracks, glazing, tension.",
     .parts = {{"BT-A48", 0.2}}},
    {.jobNo = "S-113", .name = "Fire extinguisher and first-aid kit", .shopWork = true,
     .period = "M", .interval = 6, .renewal = "S", .laborHours = 0.2,
     .months = AllMonths, .weeks = "10000", .days = Weekdays,
     .note = "Gauge in the green, seal intact, kit restocked."},
    {.jobNo = "S-114", .name = "Lights and reflectors check", .shopWork = false,
     .period = "M", .interval = 1, .renewal = "W", .laborHours = 0.2,
     .months = AllMonths, .weeks = AllWeeks, .days = Weekdays,
     .note = "Every lamp, the plug and the reflectors."},
    {.jobNo = "S-115", .name = "Coolant and wiper service", .shopWork = true,
     .period = "M", .interval = 3, .renewal = "W", .laborHours = 0.5,
     .months = AllMonths, .weeks = AllWeeks, .days = Weekdays,
     .note = "Coolant strength, hoses, blades and washer fluid."},
    {.jobNo = "S-109", .name = "Fleet recall: fuel line clamp", .shopWork = true,
     .period = "D", .interval = 0, .renewal = "D", .separateWo = true, .laborHours = 0.5,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "One-off recall, bulletin 23-117."},
    {.jobNo = "S-201", .name = "Engine oil and filter change", .shopWork = true,
     .period = "H", .interval = 100, .renewal = "W", .laborHours = 1.0,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 100 hours.",
     .parts = {{"OF-2210", 1}, {"EO-1040", 2}}},
    {.jobNo = "S-202", .name = "Hydraulic fluid and filter change", .shopWork = true,
     .period = "H", .interval = 500, .renewal = "S", .laborHours = 2.5,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 500 hours, on the 500-hour grid.",
     .parts = {{"HF-7700", 1}, {"HO-0020", 1}}},
    {.jobNo = "S-203", .name = "Oil change and tire rotation", .shopWork = true,
     .period = "I", .interval = 5000, .renewal = "W", .laborHours = 1.25,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 5,000 miles.",
     .parts = {{"OF-5530", 1}, {"EO-1530", 2}}},
    {.jobNo = "S-204", .name = "Vidange et permutation des pneus", .shopWork = true,
     .period = "K", .interval = 8000, .renewal = "W", .laborHours = 1.25,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Tous les 8 000 km.",
     .parts = {{"OF-5530", 1}, {"EO-1530", 2}}},
    {.jobNo = "S-205", .name = "Wheel bearing repack", .shopWork = true,
     .period = "C", .interval = 120, .renewal = "S", .laborHours = 1.5,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 120 trips, counted on the hub counter.",
     .parts = {{"WB-1000", 1}}},
    {.jobNo = "S-206", .name = "Air filter change", .shopWork = true,
     .period = "H", .interval = 250, .renewal = "W", .laborHours = 0.3,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 250 hours.",
     .parts = {{"AF-1180", 1}}},
    {.jobNo = "S-207", .name = "Spark plug and PTO belt change", .shopWork = true,
     .period = "H", .interval = 300, .renewal = "W", .laborHours = 0.75,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 300 hours.",
     .parts = {{"SP-RN14", 2}, {"BT-PTO2", 1}}},
    {.jobNo = "S-208", .name = "Fuel filter change", .shopWork = true,
     .period = "H", .interval = 200, .renewal = "S", .laborHours = 0.4,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 200 hours, on the 200-hour grid.",
     .parts = {{"FF-0420", 1}}},
    {.jobNo = "S-209", .name = "Brake inspection", .shopWork = true,
     .period = "I", .interval = 10000, .renewal = "W", .laborHours = 1.0,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 10,000 miles.",
     .parts = {{"BR-PAD4", 1}}},
    {.jobNo = "S-210", .name = "Inspection des freins", .shopWork = true,
     .period = "K", .interval = 16000, .renewal = "W", .laborHours = 1.0,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Tous les 16 000 km.",
     .parts = {{"BR-PAD4", 1}}},
    {.jobNo = "S-211", .name = "Coupler and safety chain check", .shopWork = true,
     .period = "C", .interval = 60, .renewal = "W", .laborHours = 0.3,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 60 trips.",
     .parts = {{"GR-0100", 0.25}}},
    {.jobNo = "S-216", .name = "Tire rotation and balance", .shopWork = true,
     .period = "I", .interval = 7500, .renewal = "S", .laborHours = 1.0,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Every 7,500 miles.",
     .parts = {{"TR-LT265", 0.5}}},
    {.jobNo = "S-217", .name = "Rotation et equilibrage des pneus", .shopWork = true,
     .period = "K", .interval = 12000, .renewal = "S", .laborHours = 1.0,
     .months = AllMonths, .weeks = AllWeeks, .days = AllDays,
     .note = "Tous les 12 000 km.",
     .parts = {{"TR-LT265", 0.5}}},
};
// clang-format on
constexpr int RecallMachines = 3;
const std::pair<const char*, const char*> MetricJobs[] = {
    {"S-203", "S-204"}, {"S-209", "S-210"}, {"S-216", "S-217"}};

/** Where a machine stands: its kind, its place among that kind and its place in the key order. */
struct Place
{
    int kind;
    int ordinal;
    int index;
};

/** The hand-made machines, kind after kind, in the order of their keys. */
QList<Place> handMadePlaces()
{
    QList<Place> places;
    for (int k = 0; k < int(std::size(Kinds)); ++k) {
        for (int n = 0; n < Kinds[k].count; ++n) {
            places.append({k, n, int(places.size())});
        }
    }
    return places;
}

/**
 * The machines of a fleet of that size. A small fleet takes the first of each
 * kind in turn; beyond the hand-made ones, each block repeats their pattern
 * with the ordinals counting on.
 */
QList<Place> fleetPlaces(int size)
{
    QList<Place> places = handMadePlaces();
    Q_ASSERT(places.size() == DemoFleet::DefaultMachines);
    if (size < places.size()) {
        std::stable_sort(places.begin(), places.end(),
                         [](const Place& a, const Place& b) { return a.ordinal < b.ordinal; });
        places.resize(size);
        std::sort(places.begin(), places.end(),
                  [](const Place& a, const Place& b) { return a.index < b.index; });
        return places;
    }
    const int handMade = int(places.size());
    for (int index = handMade; index < size; ++index) {
        const Place& pattern = places.at(index % handMade);
        const int block = index / handMade;
        places.append({pattern.kind, Kinds[pattern.kind].count * block + pattern.ordinal, index});
    }
    return places;
}

/** Points the draws at other numbers for as long as it lives. */
class DrawFrom
{
public:
    DrawFrom(QRandomGenerator*& draw, QRandomGenerator* from) : m_draw(draw), m_before(draw)
    {
        m_draw = from;
    }
    ~DrawFrom() { m_draw = m_before; }
    DrawFrom(const DrawFrom&) = delete;
    DrawFrom& operator=(const DrawFrom&) = delete;

private:
    QRandomGenerator*& m_draw;
    QRandomGenerator* m_before;
};

/** The columns of a machine, as one list of names. */
const char* const EquipmentColumns =
    "EquipmentID EquipmentName UnitNo Capacity EquipmentSerialNo Bar_Code EquipmentYear "
    "EquipmentType EquipmentMake EquipmentModel InstalledDate SiteID LocationID CrewID "
    "Inactive LeaseOwnedLeased LeaseCompany LeaseStartDate LeaseEndDate LeasePeriod "
    "LeaseInterval LeasePayment WarrantyStartDate WarrantyEndDate WarrantyPeriod "
    "WarrantyInterval Notes EngineMake EngineModel EngineFuelType EngineSerialNo "
    "EngineSize Cycle VehicleOwnedLeased BeginingHub StateLicensed LicenseNo "
    "StickerNumber LicenseRenewalDate PermanentLicense InspectionDate VehicleFuelType "
    "Tyre Rear_Tires Weight Vin Body Chassis Trans VehicleEngineType VehicleColor "
    "SupplierID ManufactureID AcquisitionDate AcquisitionCost AdditionalCost Totalcost "
    "SalvageValue LifeYears";

int serviceIndex(const QString& jobNo)
{
    for (int i = 0; i < int(std::size(Services)); ++i) {
        if (jobNo == QLatin1String(Services[i].jobNo)) {
            return i;
        }
    }
    return -1;
}

const Part* partNamed(const char* id)
{
    for (const Part& p : Parts) {
        if (qstrcmp(p.id, id) == 0) {
            return &p;
        }
    }
    return nullptr;
}

QVariant patternFlag(const char* pattern, int index)
{
    return SqlValue::flag(pattern[index] == '1');
}

/** The schedule columns that a master service and its copies on machines share, in order. */
QStringList scheduleColumnNames()
{
    return QStringLiteral("JobNo Name CrewID CostCenterID Period EInterval RenewalOn SeparateWo "
                          "LaborEstimate CostEstimate Mon Tue Wed Thu Fri Sat Sun FirstW SecondW "
                          "ThirdW ForthW LastW Dom DOM1 DOM2 DOM3 DOM4 DOM5 Jan Feb Mar Apr May "
                          "Jun Jul Aug Sep Oct Nov Dece Note")
        .split(u' ');
}

QVariantList scheduleValues(const Service& s, qint64 crewId, qint64 costCenterId)
{
    QVariantList v{text(s.jobNo),   text(s.name),
                   crewId,          costCenterId,
                   text(s.period),  s.interval,
                   text(s.renewal), SqlValue::flag(s.separateWo),
                   s.laborHours,    qRound(s.laborHours * LaborCostPerHour * 100) / 100.0};
    for (int day : {1, 2, 3, 4, 5, 6, 0}) { // Mon to Sun from a Sunday-first pattern
        v.append(patternFlag(s.days, day));
    }
    for (int week = 0; week < 5; ++week) {
        v.append(patternFlag(s.weeks, week));
    }
    v.append(SqlValue::flag(s.dom));
    for (int i = 0; i < 5; ++i) {
        v.append(s.domList[i]);
    }
    for (int month = 0; month < 12; ++month) {
        v.append(patternFlag(s.months, month));
    }
    v.append(text(s.note));
    return v;
}

/** How much of a full week's use a mower sees in the month of that day. */
int seasonPercent(const QDate& day)
{
    const int month = day.month();
    if (month >= 4 && month <= 10) {
        return 100;
    }
    return month == 3 || month == 11 ? 40 : 10;
}

} // namespace

DemoFleet::DemoFleet(Session& session, int machines)
    : m_session(session), m_size(machines), m_random(Seed), m_today(session.today())
{}

DemoFleet::~DemoFleet() = default;

QDateTime DemoFleet::keyBase()
{
    return QDateTime(QDate(2024, 1, 15), QTime(8, 0, 0));
}

QString DemoFleet::summary() const
{
    return QStringLiteral("%1 machines, %2 services, %3 services on machines, %4 meter readings, "
                          "%5 parts, %6 employees")
        .arg(m_counts.machines)
        .arg(m_counts.services)
        .arg(m_counts.servicesOnMachines)
        .arg(m_counts.readings)
        .arg(m_counts.parts)
        .arg(m_counts.employees);
}

bool DemoFleet::fail(const QString& reason)
{
    if (m_error.isEmpty()) {
        m_error = reason;
    }
    return false;
}

int DemoFleet::between(int low, int high)
{
    return int(m_draw->bounded(low, high + 1));
}

QRandomGenerator DemoFleet::ownNumbers(const Machine& machine, quint32 step) const
{
    const quint32 seeds[] = {Seed, quint32(machine.index), step};
    return QRandomGenerator(seeds, qsizetype(std::size(seeds)));
}

void DemoFleet::tell(const QString& step, int done, int total) const
{
    if (m_progress) {
        m_progress(step, done, total);
    }
}

qint64 DemoFleet::item(const QString& list, const QString& name) const
{
    return m_items.value(list + u'/' + name);
}

qint64 DemoFleet::addItem(BatchInsert& insert, qint64 parent, const QString& name)
{
    if (!insert.insert({parent, name, SqlValue::yesNo(true), 0})) {
        fail(insert.error());
        return 0;
    }
    return insert.returned();
}

bool DemoFleet::generate(QString* error)
{
    m_error.clear();
    m_counts = {};
    m_random.seed(Seed);
    m_draw = &m_random;
    m_items.clear();
    m_siteIds.clear();
    m_locationIds.clear();
    m_crewIds.clear();
    m_costCenterIds.clear();
    m_serviceIds.clear();
    m_machines.clear();
    Transaction transaction(m_session);
    if (!transaction.isActive()) {
        *error = transaction.error();
        return false;
    }
    const bool ok = addLookupLists() && addPlacesAndCrews() && addEmployees() &&
                    addSuppliersAndParts() && addServices() && addMachines() && attachServices();
    if (!ok || !transaction.commit()) {
        *error = m_error.isEmpty() ? transaction.error() : m_error;
        transaction.rollback();
        m_counts = {};
        return false;
    }
    return true;
}

bool DemoFleet::addLookupLists()
{
    BatchInsert insert(m_session.db(), QStringLiteral("tblIndicator"),
                       {QStringLiteral("ParentId"), QStringLiteral("ItemName"),
                        QStringLiteral("Show"), QStringLiteral("FSize")},
                       QStringLiteral("ItemID"));
    if (!insert.isValid()) {
        return fail(insert.error());
    }
    auto add = [&](const QString& list, qint64 parent, const QString& name) {
        const qint64 id = addItem(insert, parent, name);
        m_items.insert(list + u'/' + name, id);
        return id != 0;
    };
    for (const PlainList& list : PlainLists) {
        for (const char* name : list.items) {
            if (name && !add(QString::number(list.number), list.number, text(name))) {
                return false;
            }
        }
    }
    for (const Country& country : Countries) {
        if (!add(QStringLiteral("1"), 1, text(country.name))) {
            return false;
        }
        const qint64 countryId = item(QStringLiteral("1"), text(country.name));
        for (const char* state : country.states) {
            if (state && !add(QStringLiteral("11"), countryId, text(state))) {
                return false;
            }
        }
    }
    for (const EngineMake& make : EngineMakes) {
        if (!add(QStringLiteral("17"), 17, text(make.name))) {
            return false;
        }
        const qint64 makeId = item(QStringLiteral("17"), text(make.name));
        for (const char* model : make.models) {
            if (!add(QStringLiteral("9/") + text(make.name), makeId, text(model))) {
                return false;
            }
        }
    }
    for (const MachineKind& kind : Kinds) {
        if (!add(QStringLiteral("4"), 4, text(kind.type))) {
            return false;
        }
        const qint64 typeId = item(QStringLiteral("4"), text(kind.type));
        for (const MakeModels& make : kind.makes) {
            const QString makeList = QStringLiteral("7/") + text(kind.type);
            if (item(makeList, text(make.make)) == 0 && !add(makeList, typeId, text(make.make))) {
                return false;
            }
            const qint64 makeId = item(makeList, text(make.make));
            const QString modelList =
                QStringLiteral("9/") + text(kind.type) + u'/' + text(make.make);
            for (const char* model : make.models) {
                if (item(modelList, text(model)) == 0 && !add(modelList, makeId, text(model))) {
                    return false;
                }
            }
        }
    }
    return true;
}

bool DemoFleet::addPlacesAndCrews()
{
    BatchInsert sites(m_session.db(), QStringLiteral("tblSite"),
                      {QStringLiteral("SiteName"), QStringLiteral("Address"),
                       QStringLiteral("City"), QStringLiteral("StateID"), QStringLiteral("Zip")},
                      QStringLiteral("SiteID"));
    BatchInsert locations(
        m_session.db(), QStringLiteral("tblLocation"),
        {QStringLiteral("LocationName"), QStringLiteral("Description"), QStringLiteral("Site")},
        QStringLiteral("LocationID"));
    BatchInsert crews(m_session.db(), QStringLiteral("tblCrew"),
                      {QStringLiteral("CrewNumber"), QStringLiteral("Description")},
                      QStringLiteral("CrewID"));
    BatchInsert centers(m_session.db(), QStringLiteral("tblCostCenter"),
                        {QStringLiteral("Description"), QStringLiteral("Budget")},
                        QStringLiteral("CostCenterID"));
    for (const Site& site : Sites) {
        if (!sites.insert({text(site.name), text(site.address), text(site.city),
                           item(QStringLiteral("11"), text(site.state)), text(site.zip)})) {
            return fail(sites.error());
        }
        m_siteIds.append(sites.returned());
        QList<qint64> here;
        for (const char* location : site.locations) {
            if (!location) {
                continue;
            }
            if (!locations.insert({text(location),
                                   QStringLiteral("%1, %2").arg(text(location), text(site.name)),
                                   sites.returned()})) {
                return fail(locations.error());
            }
            here.append(locations.returned());
        }
        m_locationIds.append(here);
    }
    for (const Crew& crew : Crews) {
        if (!crews.insert({crew.number, text(crew.description)})) {
            return fail(crews.error());
        }
        m_crewIds.append(crews.returned());
    }
    for (const CostCenter& center : CostCenters) {
        if (!centers.insert({text(center.description), center.budget})) {
            return fail(centers.error());
        }
        m_costCenterIds.append(centers.returned());
    }
    return true;
}

bool DemoFleet::addEmployees()
{
    BatchInsert insert(
        m_session.db(), QStringLiteral("tblEmployee"),
        {QStringLiteral("EmployeeID"),   QStringLiteral("FirstName"), QStringLiteral("InitialName"),
         QStringLiteral("Lastname"),     QStringLiteral("BirthDate"), QStringLiteral("Gender"),
         QStringLiteral("Address"),      QStringLiteral("City"),      QStringLiteral("State"),
         QStringLiteral("Country"),      QStringLiteral("Zip"),       QStringLiteral("Phone"),
         QStringLiteral("Email"),        QStringLiteral("LicenseNo"), QStringLiteral("Site"),
         QStringLiteral("Skills"),       QStringLiteral("Crew"),      QStringLiteral("EmpPosition"),
         QStringLiteral("LaborCost"),    QStringLiteral("LaborRate"), QStringLiteral("Inactive"),
         QStringLiteral("IncludeWoList")});
    for (const Employee& e : Employees) {
        const int siteIndex = e.crew == ShopCrew ? 0 : e.crew;
        const Site& site = Sites[siteIndex];
        const QString country =
            siteIndex == CanadianSite ? QStringLiteral("Canada") : QStringLiteral("United States");
        const QString email = QStringLiteral("%1.%2@grounds.example")
                                  .arg(text(e.first).toLower(), text(e.last).toLower())
                                  .remove(u'\'');
        const QVariantList values{
            text(e.id),
            text(e.first),
            text(e.initial),
            text(e.last),
            SqlValue::date(m_today.addYears(-between(22, 58)).addDays(-between(0, 364))),
            text(e.gender),
            QStringLiteral("%1 Elm St").arg(between(100, 9899)),
            text(site.city),
            item(QStringLiteral("11"), text(site.state)),
            item(QStringLiteral("1"), country),
            text(site.zip),
            QStringLiteral("(555) 555-01%1").arg(between(10, 99)),
            email,
            QStringLiteral("DL%1").arg(between(1000000, 9999999)),
            m_siteIds.at(siteIndex),
            text(e.skills),
            m_crewIds.at(e.crew),
            item(QStringLiteral("3"), text(e.position)),
            e.laborCost,
            qRound(e.laborCost * 1.6 * 100) / 100.0,
            SqlValue::flag(false),
            SqlValue::flag(true)};
        if (!insert.insert(values)) {
            return fail(insert.error());
        }
        ++m_counts.employees;
    }
    return true;
}

bool DemoFleet::addSuppliersAndParts()
{
    BatchInsert suppliers(m_session.db(), QStringLiteral("tblSupplier"),
                          {QStringLiteral("SupplierID"), QStringLiteral("Name"),
                           QStringLiteral("Terms"), QStringLiteral("CreditLimit"),
                           QStringLiteral("Email"), QStringLiteral("Address"),
                           QStringLiteral("City"), QStringLiteral("State"), QStringLiteral("Zip"),
                           QStringLiteral("Phone"), QStringLiteral("ContactName")});
    int supplierId = 0;
    for (const Supplier& s : Suppliers) {
        if (!suppliers.insert({++supplierId, text(s.name), text(s.terms), s.creditLimit,
                               text(s.email),
                               QStringLiteral("%1 Industrial Way").arg(between(10, 990)),
                               text(s.city), item(QStringLiteral("11"), text(s.state)), text(s.zip),
                               QStringLiteral("555-02%1").arg(between(10, 99)), text(s.contact)})) {
            return fail(suppliers.error());
        }
    }
    BatchInsert parts(
        m_session.db(), QStringLiteral("tblPart"),
        {QStringLiteral("PartID"), QStringLiteral("Description"), QStringLiteral("PartCategoryID"),
         QStringLiteral("Quantity"), QStringLiteral("Price"), QStringLiteral("SupplierID"),
         QStringLiteral("QtyMax"), QStringLiteral("QtyMin"), QStringLiteral("Inactive"),
         QStringLiteral("Bin"), QStringLiteral("TrackInventory")});
    for (const Part& p : Parts) {
        if (!parts.insert({text(p.id), text(p.description),
                           item(QStringLiteral("10"), text(p.category)), p.quantity, p.price,
                           p.supplier + 1, p.qtyMax, p.qtyMin, SqlValue::yesNo(false), text(p.bin),
                           SqlValue::yesNo(false)})) {
            return fail(parts.error());
        }
        ++m_counts.parts;
    }
    return true;
}

bool DemoFleet::addServices()
{
    QStringList columns{QStringLiteral("ServiceID")};
    columns += scheduleColumnNames();
    BatchInsert insert(m_session.db(), QStringLiteral("tblServices"), columns);
    BatchInsert parts(m_session.db(), QStringLiteral("tblServicesPart"),
                      {QStringLiteral("ServiceID"), QStringLiteral("PartID"),
                       QStringLiteral("QuantityRequired"), QStringLiteral("Price"),
                       QStringLiteral("SupplierID")});
    // Master services count on from the hand-made machines' keys, far enough not to meet them;
    // generated machines count from the next day.
    const QDateTime base = keyBase().addSecs(100);
    for (int i = 0; i < int(std::size(Services)); ++i) {
        const Service& s = Services[i];
        const qint64 id = DataHelpers::generateUniqueId(base.addSecs(i));
        QVariantList values{id};
        values += scheduleValues(s, m_crewIds.at(s.shopWork ? ShopCrew : 0),
                                 m_costCenterIds.at(s.shopWork ? 1 : 0));
        if (!insert.insert(values)) {
            return fail(insert.error());
        }
        for (const PartUse& use : s.parts) {
            if (!use.part) {
                continue;
            }
            const Part* part = partNamed(use.part);
            if (!part) {
                return fail(QStringLiteral("There is no part %1.").arg(text(use.part)));
            }
            if (!parts.insert(
                    {id, text(use.part), use.quantity, part->price, part->supplier + 1})) {
                return fail(parts.error());
            }
        }
        m_serviceIds.append(id);
        ++m_counts.services;
    }
    return true;
}

void DemoFleet::addIdentity(Values& v, const Machine& machine, const QDate& installed)
{
    const MachineKind& kind = Kinds[machine.kind];
    const MakeModels& make = kind.makes[machine.ordinal % 2];
    const QString model = text(make.models[(machine.ordinal / 2) % 2]);
    const QString type = text(kind.type);
    v[QStringLiteral("EquipmentID")] = machine.id;
    v[QStringLiteral("EquipmentName")] =
        QStringLiteral("%1 %2 %3").arg(text(make.make), model, type);
    v[QStringLiteral("UnitNo")] = QStringLiteral("%1-%2")
                                      .arg(text(kind.unitPrefix))
                                      .arg(machine.ordinal + 1, 2, 10, QLatin1Char('0'));
    v[QStringLiteral("Capacity")] = text(kind.capacity);
    v[QStringLiteral("EquipmentSerialNo")] =
        QStringLiteral("%1%2").arg(text(kind.unitPrefix)).arg(between(1000000, 9999999));
    v[QStringLiteral("Bar_Code")] = QStringLiteral("TD%1").arg(machine.id);
    v[QStringLiteral("EquipmentYear")] = QString::number(installed.year());
    v[QStringLiteral("EquipmentType")] = item(QStringLiteral("4"), type);
    v[QStringLiteral("EquipmentMake")] = item(QStringLiteral("7/") + type, text(make.make));
    v[QStringLiteral("EquipmentModel")] =
        item(QStringLiteral("9/") + type + u'/' + text(make.make), model);
    v[QStringLiteral("InstalledDate")] = SqlValue::date(installed);
    v[QStringLiteral("SiteID")] = m_siteIds.at(machine.site);
    const QList<qint64>& locations = m_locationIds.at(machine.site);
    v[QStringLiteral("LocationID")] = locations.at(machine.ordinal % locations.size());
    v[QStringLiteral("CrewID")] = m_crewIds.at(machine.crew);
    v[QStringLiteral("Inactive")] = SqlValue::flag(machine.retired);
    if (machine.ordinal == 0) {
        v[QStringLiteral("Notes")] =
            QStringLiteral("Operator's seat replaced, 2 springs \"heavy duty\".");
    } else if (machine.ordinal == 1) {
        v[QStringLiteral("Notes")] =
            QStringLiteral("Left work light cracked.\nReplace at the next service.");
    }
}

void DemoFleet::addEngine(Values& v, const Machine& machine)
{
    const MachineKind& kind = Kinds[machine.kind];
    for (const EngineMake& engine : EngineMakes) {
        if (kind.engineMake && qstrcmp(engine.name, kind.engineMake) == 0) {
            const QString model = text(engine.models[machine.ordinal % 2]);
            v[QStringLiteral("EngineMake")] = item(QStringLiteral("17"), text(engine.name));
            v[QStringLiteral("EngineModel")] =
                item(QStringLiteral("9/") + text(engine.name), model);
            v[QStringLiteral("EngineFuelType")] = item(QStringLiteral("5"), text(kind.fuel));
            v[QStringLiteral("EngineSerialNo")] =
                QStringLiteral("EN%1").arg(between(100000, 999999));
            v[QStringLiteral("EngineSize")] = model;
            v[QStringLiteral("Cycle")] = QStringLiteral("4");
        }
    }
}

void DemoFleet::addVehicle(Values& v, const Machine& machine, bool leased)
{
    const Site& site = Sites[machine.site];
    const bool canadian = machine.site == CanadianSite;
    v[QStringLiteral("VehicleOwnedLeased")] = leased ? 2 : 1;
    v[QStringLiteral("BeginingHub")] = between(5, 60);
    v[QStringLiteral("StateLicensed")] = item(QStringLiteral("11"), text(site.state));
    v[QStringLiteral("LicenseNo")] =
        QStringLiteral("%1 %2")
            .arg(canadian ? QStringLiteral("FQC") : QStringLiteral("GRN"))
            .arg(between(1000, 9999));
    v[QStringLiteral("StickerNumber")] = QString::number(between(100000, 999999));
    v[QStringLiteral("LicenseRenewalDate")] = SqlValue::date(m_today.addDays(between(-20, 330)));
    v[QStringLiteral("PermanentLicense")] = 2; // "No"
    v[QStringLiteral("InspectionDate")] = SqlValue::date(m_today.addDays(between(-10, 200)));
    v[QStringLiteral("VehicleFuelType")] =
        item(QStringLiteral("5"), text(Kinds[machine.kind].fuel));
    v[QStringLiteral("Tyre")] = QStringLiteral("LT265/75R16");
    v[QStringLiteral("Rear_Tires")] = QStringLiteral("LT265/75R16");
    v[QStringLiteral("Weight")] = QStringLiteral("6,450 lb");
    v[QStringLiteral("Vin")] =
        QStringLiteral("1HD%1TR%2").arg(between(1000, 9999)).arg(between(10000000, 99999999));
    v[QStringLiteral("Body")] = item(QStringLiteral("13"), QStringLiteral("Pickup"));
    v[QStringLiteral("Chassis")] = item(QStringLiteral("14"), QStringLiteral("Light Duty"));
    v[QStringLiteral("Trans")] = item(QStringLiteral("16"), QStringLiteral("Automatic"));
    v[QStringLiteral("VehicleEngineType")] = item(QStringLiteral("15"), QStringLiteral("V8"));
    v[QStringLiteral("VehicleColor")] =
        machine.ordinal % 3 == 0 ? QStringLiteral("Green") : QStringLiteral("White");
}

void DemoFleet::addPurchase(Values& v, const Machine& machine, const QDate& installed, bool leased)
{
    const MachineKind& kind = Kinds[machine.kind];
    v[QStringLiteral("LeaseOwnedLeased")] = leased ? 2 : 1; // "Leased" or "Owned"
    if (leased) {
        v[QStringLiteral("LeaseCompany")] =
            item(QStringLiteral("6"), QStringLiteral("Northwest Fleet Finance"));
        v[QStringLiteral("LeaseStartDate")] = SqlValue::date(installed);
        v[QStringLiteral("LeaseEndDate")] = SqlValue::date(installed.addYears(4));
        v[QStringLiteral("LeasePeriod")] = 6; // years
        v[QStringLiteral("LeaseInterval")] = 4;
        v[QStringLiteral("LeasePayment")] = 689.0;
    }
    v[QStringLiteral("WarrantyStartDate")] = SqlValue::date(installed);
    v[QStringLiteral("WarrantyEndDate")] = SqlValue::date(installed.addYears(2));
    v[QStringLiteral("WarrantyPeriod")] = 6; // years
    v[QStringLiteral("WarrantyInterval")] = 2;
    const double cost = qRound(kind.cost * between(90, 110)) / 100.0;
    const double additional = between(0, 12) * 50.0;
    v[QStringLiteral("SupplierID")] = kind.meter == Meter::Miles ? 3 : 1;
    v[QStringLiteral("ManufactureID")] = item(QStringLiteral("8"), QStringLiteral("OEM"));
    v[QStringLiteral("AcquisitionDate")] = SqlValue::date(installed);
    v[QStringLiteral("AcquisitionCost")] = cost;
    v[QStringLiteral("AdditionalCost")] = additional;
    v[QStringLiteral("Totalcost")] = cost + additional;
    v[QStringLiteral("SalvageValue")] = qRound(cost * 0.1);
    v[QStringLiteral("LifeYears")] = kind.lifeYears;
}

QVariantList DemoFleet::machineValues(const QStringList& columns, const Machine& machine)
{
    const MachineKind& kind = Kinds[machine.kind];
    const int yearsOld = between(0, kind.lifeYears - 1);
    const QDate installed = m_today.addYears(-yearsOld).addDays(-between(0, 300));
    const bool truck = kind.meter == Meter::Miles;
    const bool leased = truck && machine.ordinal % 4 == 3;
    Values v;
    addIdentity(v, machine, installed);
    addPurchase(v, machine, installed, leased);
    addEngine(v, machine);
    if (truck) {
        addVehicle(v, machine, leased);
    }
    QVariantList values;
    for (const QString& column : columns) {
        values.append(v.value(column));
    }
    return values;
}

DemoFleet::Machine DemoFleet::newMachine(int kind, int ordinal, int index) const
{
    const Meter meter = Kinds[kind].meter;
    Machine machine;
    // Generated machines count from the next day on, clear of the master services' keys.
    machine.generated = index >= DefaultMachines;
    const QDateTime key = machine.generated ? keyBase().addDays(1).addSecs(index - DefaultMachines)
                                            : keyBase().addSecs(index);
    machine.id = DataHelpers::generateUniqueId(key);
    machine.index = index;
    machine.kind = kind;
    machine.ordinal = ordinal;
    machine.retired = meter == Meter::Counts && ordinal == Kinds[kind].count - 1;
    machine.site = meter == Meter::Miles ? (ordinal < 2 ? CanadianSite : ordinal % 2)
                                         : ordinal % int(std::size(Sites));
    machine.crew = meter == Meter::Counts ? ShopCrew : machine.site;
    switch (meter) {
    case Meter::Hours:
        machine.countType = QStringLiteral("Hours");
        break;
    case Meter::Miles:
        machine.countType =
            machine.site == CanadianSite ? QStringLiteral("Kilometers") : QStringLiteral("Miles");
        break;
    case Meter::Counts:
        machine.countType = QStringLiteral("Counts");
        break;
    }
    return machine;
}

bool DemoFleet::addMachines()
{
    const QStringList columns = QString::fromLatin1(EquipmentColumns).split(u' ');
    const QSqlDatabase db = m_session.db();
    BatchInsert equipment(db, QStringLiteral("tblEquipment"), columns);
    BatchInsert crewHistory(db, QStringLiteral("tblEquipmentCrewHistory"),
                            {QStringLiteral("EquipmentID"), QStringLiteral("CrewNumber"),
                             QStringLiteral("CrewDescription"), QStringLiteral("CrewDate")});
    BatchInsert fitting(db, QStringLiteral("tblEquipmentPart"),
                        {QStringLiteral("EquipmentID"), QStringLiteral("PartID"),
                         QStringLiteral("QuantityRequired"), QStringLiteral("Price"),
                         QStringLiteral("SupplierID")});
    BatchInsert readings(db, QStringLiteral("tblEquipmentCount"),
                         {QStringLiteral("EquipmentID"), QStringLiteral("ChangeDate"),
                          QStringLiteral("CountType"), QStringLiteral("CountValue")});
    const QList<Place> places = fleetPlaces(m_size);
    for (const Place& place : places) {
        Machine machine = newMachine(place.kind, place.ordinal, place.index);
        QRandomGenerator own = ownNumbers(machine, 1);
        const DrawFrom from(m_draw, machine.generated ? &own : m_draw);
        const QVariantList values = machineValues(columns, machine);
        if (!equipment.insert(values)) {
            return fail(equipment.error());
        }
        const Crew& crew = Crews[machine.crew];
        if (!crewHistory.insert({machine.id, crew.number, text(crew.description),
                                 values.at(columns.indexOf(QStringLiteral("InstalledDate")))})) {
            return fail(crewHistory.error());
        }
        for (const char* partId : Kinds[place.kind].fittingParts) {
            const Part* part = partId ? partNamed(partId) : nullptr;
            if (part &&
                !fitting.insert({machine.id, text(part->id), 1, part->price, part->supplier + 1})) {
                return fail(fitting.error());
            }
        }
        if (!machine.retired && !addReadings(readings, machine)) {
            return false;
        }
        m_machines.append(machine);
        tell(QStringLiteral("Machines made"), ++m_counts.machines, int(places.size()));
    }
    return true;
}

bool DemoFleet::addReadings(BatchInsert& insert, Machine& machine)
{
    const MachineKind& kind = Kinds[machine.kind];
    const bool metric = machine.countType == QLatin1String("Kilometers");
    const int weeklyUse = metric ? kind.weeklyUse * 8 / 5 : kind.weeklyUse;
    // Some machines were last read well over a week ago and show up as due for a reading.
    const int lastReadDaysAgo = between(0, 12);
    qint64 value = qint64(weeklyUse) * between(20, 200);
    for (int week = WeeksOfReadings - 1; week >= 0; --week) {
        const QDate day = daysAgo(lastReadDaysAgo + 7 * week);
        const int season = kind.seasonal ? seasonPercent(day) : 100;
        value += qint64(weeklyUse) * season * between(70, 130) / 10000;
        machine.readings.append({day, value});
        // The latest reading is added once the services are on the machine.
        if (week == 0) {
            break;
        }
        if (!insert.insert({machine.id, SqlValue::date(day), machine.countType, value})) {
            return fail(insert.error());
        }
        ++m_counts.readings;
    }
    return true;
}

QList<qint64> DemoFleet::serviceIdsOf(const Machine& machine)
{
    const MachineKind& kind = Kinds[machine.kind];
    QStringList jobs;
    for (const char* job : kind.services) {
        if (job) {
            jobs.append(text(job));
        }
    }
    if (machine.countType == QLatin1String("Kilometers")) {
        // The Canadian trucks keep the same work on kilometre schedules.
        for (const auto& [miles, kilometres] : MetricJobs) {
            jobs.replace(jobs.indexOf(text(miles)), text(kilometres));
        }
    }
    if (kind.meter == Meter::Miles && machine.ordinal < RecallMachines) {
        jobs.append(QStringLiteral("S-109"));
    }
    QList<qint64> ids;
    for (const QString& job : std::as_const(jobs)) {
        const int service = serviceIndex(job);
        if (service < 0) {
            fail(QStringLiteral("There is no service %1.").arg(job));
            return {};
        }
        ids.append(m_serviceIds.at(service));
    }
    return ids;
}

bool DemoFleet::attachServices()
{
    EquipmentServices services(m_session);
    MeterReadings readings(m_session);
    // Every machine has readings of its own count type, so nobody is asked.
    const auto noCount = [](qint64, qint64, const QString&, const QString&) { return false; };
    int done = 0;
    for (const Machine& machine : std::as_const(m_machines)) {
        tell(QStringLiteral("Machines given their services"), ++done, int(m_machines.size()));
        if (machine.retired) {
            continue;
        }
        QRandomGenerator own = ownNumbers(machine, 2);
        const DrawFrom from(m_draw, machine.generated ? &own : m_draw);
        const QList<qint64> ids = serviceIdsOf(machine);
        if (ids.isEmpty() || !services.addServiceRecord(
                                 machine.id, ids, EquipmentServices::FromServiceList, noCount)) {
            return fail(m_error.isEmpty() ? QStringLiteral("Services could not be attached.")
                                          : m_error);
        }
        for (const QSqlRecord& row : services.rows(machine.id)) {
            const int service = int(m_serviceIds.indexOf(row.value(2).toLongLong()));
            if (!giveHistory(services, machine, row.value(0).toLongLong(), service)) {
                return false;
            }
            ++m_counts.servicesOnMachines;
        }
        // This week's reading comes last, so that the program's own rule makes services due.
        const Reading& latest = machine.readings.last();
        if (!readings.addCount(machine.id, latest.day, machine.countType, latest.value)) {
            return fail(QStringLiteral("The latest reading could not be added."));
        }
        ++m_counts.readings;
    }
    return true;
}

bool DemoFleet::giveHistory(EquipmentServices& services, const Machine& machine,
                            qint64 serviceUsedId, int service)
{
    const Service& s = Services[service];
    // Shop work stays with the shop crew; other work goes to the machine's own crew, at its rate.
    if (!s.shopWork && !services.editCell(serviceUsedId, EquipmentServices::Cell::Crew,
                                          m_crewIds.at(machine.crew))) {
        return fail(QStringLiteral("The crew of a service could not be changed."));
    }
    const bool canadian = !s.shopWork && machine.site == CanadianSite;
    if (canadian && !run(QStringLiteral("UPDATE tblServiceUsed SET CostCenterID = ? "
                                        "WHERE ServiceUsedID = ?"),
                         {m_costCenterIds.at(2), serviceUsedId})) {
        return false;
    }
    if (ScheduleCodes::isMeterPeriod(text(s.period))) {
        return lastDoneByMeter(machine, serviceUsedId, service);
    }
    return lastDoneByCalendar(machine, serviceUsedId, service);
}

bool DemoFleet::lastDoneByMeter(const Machine& machine, qint64 serviceUsedId, int service)
{
    const Service& s = Services[service];
    // Some were attached lately and wait for the count they were given; the rest were last
    // done at the reading that lies about this much use back.
    if (between(0, 3) == 0) {
        return true;
    }
    const QList<Reading>& readings = machine.readings;
    const qint64 usedSince = qint64(s.interval) * between(30, 140) / 100;
    qsizetype at = 0;
    for (qsizetype i = readings.size() - 2; i >= 0; --i) {
        if (readings.last().value - readings.at(i).value >= usedSince) {
            at = i;
            break;
        }
    }
    const qint64 count = readings.at(at).value;
    const bool onGrid = QLatin1String(s.renewal) == QLatin1String("S");
    const QDate performed = readings.at(at).day;
    return recordLastDone(serviceUsedId, performed.addDays(-between(0, 4)), performed,
                          (onGrid ? count / s.interval * s.interval : count) + s.interval);
}

bool DemoFleet::lastDoneByCalendar(const Machine& machine, qint64 serviceUsedId, int service)
{
    const Service& s = Services[service];
    if (QLatin1String(s.renewal) == QLatin1String("D")) {
        // Done once on the first machine of a kind: it turned inactive and keeps its old date.
        if (machine.ordinal != 0) {
            return true;
        }
        const QDate performed = daysAgo(between(20, 60));
        const QDate scheduled = performed.addDays(-2);
        return run(QStringLiteral("UPDATE tblServiceUsed SET LastDateScheduled = ?, "
                                  "LastDatePerformed = ?, NextScheduledDate = ?, Inactive = 1 "
                                  "WHERE ServiceUsedID = ?"),
                   {SqlValue::date(scheduled), SqlValue::date(performed), SqlValue::date(scheduled),
                    serviceUsedId});
    }
    // A quarter are new and due today, as the program makes every calendar service it attaches.
    if (between(0, 3) == 0) {
        return true;
    }
    // The rest fell due on a day the schedule allows, about one interval back, and were done
    // then or a little later.
    const int span = int(
        m_today.daysTo(NextDateCalculator::addDay(text(s.period), qMax(1, s.interval), m_today)));
    const QDate from = daysAgo(between(1, span + qMax(2, span / 4)) + span);
    NextDateCalculator calculator(m_session);
    const QDate scheduled = calculator.nextScheduledDate(serviceUsedId, true, from);
    if (!scheduled.isValid() || scheduled >= m_today) {
        return true;
    }
    const QDate performed = qMin(scheduled.addDays(between(0, 3)), m_today.addDays(-1));
    return recordLastDone(serviceUsedId, scheduled, performed, nullNumber()) &&
           run(QStringLiteral("UPDATE tblServiceUsed SET NextScheduledDate = ? "
                              "WHERE ServiceUsedID = ?"),
               {SqlValue::date(calculator.nextScheduledDate(serviceUsedId)), serviceUsedId});
}

bool DemoFleet::recordLastDone(qint64 serviceUsedId, const QDate& scheduled, const QDate& performed,
                               const QVariant& nextCount)
{
    // As posting leaves a service: the last dates set, a meter service waiting for its count.
    const QString nextDate =
        nextCount.isNull() ? QString()
                           : QStringLiteral(", NextScheduledDate = NULL, NextScheduledCount = ?");
    QVariantList values{SqlValue::date(scheduled), SqlValue::date(performed)};
    if (!nextCount.isNull()) {
        values.append(nextCount);
    }
    values.append(serviceUsedId);
    return run(QStringLiteral("UPDATE tblServiceUsed SET LastDateScheduled = ?, "
                              "LastDatePerformed = ?") +
                   nextDate + QStringLiteral(" WHERE ServiceUsedID = ?"),
               values);
}

bool DemoFleet::run(const QString& sql, const QVariantList& values)
{
    QSqlQuery q(m_session.db());
    return Sql::exec(q, sql, values) ||
           fail(QStringLiteral("tblServiceUsed: ") + q.lastError().text());
}
