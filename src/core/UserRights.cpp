#include "UserRights.h"

QString UserRights::columnName(Right right)
{
    static const char* const names[Count] = {"EqAdd",
                                             "EqMod",
                                             "EqDel",
                                             "SerAdd",
                                             "SerMod",
                                             "SerDel",
                                             "PaAdd",
                                             "PaMod",
                                             "PaDel",
                                             "EqList",
                                             "EqDetail",
                                             "EqCountSheet",
                                             "ExpOnEq",
                                             "EqCrewHistory",
                                             "EqUtilization",
                                             "EqScanHistory",
                                             "InspDatReading",
                                             "LicRenDateReading",
                                             "WOHistory",
                                             "SerList",
                                             "SerEqName",
                                             "SerHistory",
                                             "SerHistoryTime",
                                             "InvReport",
                                             "InvReorderReport",
                                             "InvOrUpSer",
                                             "InvPartUsage",
                                             "InvPartHistory"};
    return QString::fromLatin1(names[right]);
}
