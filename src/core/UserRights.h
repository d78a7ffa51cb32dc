#pragma once

#include <QString>
#include <array>

/** The 28 rights of a user, in the order of their columns in tblUser. */
class UserRights
{
public:
    enum Right {
        EqAdd,
        EqMod,
        EqDel,
        SerAdd,
        SerMod,
        SerDel,
        PaAdd,
        PaMod,
        PaDel,
        EqList,
        EqDetail,
        EqCountSheet,
        ExpOnEq,
        EqCrewHistory,
        EqUtilization,
        EqScanHistory,
        InspDatReading,
        LicRenDateReading,
        WOHistory,
        SerList,
        SerEqName,
        SerHistory,
        SerHistoryTime,
        InvReport,
        InvReorderReport,
        InvOrUpSer,
        InvPartUsage,
        InvPartHistory,
        Count
    };

    bool has(Right right) const { return m_flags[right]; }
    void set(Right right, bool on) { m_flags[right] = on; }
    void setAll(bool on) { m_flags.fill(on); }

    /** The column of tblUser that holds the right. */
    static QString columnName(Right right);

private:
    std::array<bool, Count> m_flags{};
};
