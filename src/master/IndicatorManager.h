#pragma once

#include "DataHelpers.h"
#include "Indicator.h"

#include <optional>

class Session;

/** Why an item cannot be saved, and the field the user must correct. */
struct IndicatorProblem
{
    enum class Field { Name, Parent };
    Field field;
    QString message;
};

/**
 * Reads, checks, saves and deletes the items of the lookup lists, and tells
 * whether an item may go. Failures are reported through errorHandler and
 * answered with false or an empty result.
 */
class IndicatorManager
{
public:
    explicit IndicatorManager(Session& session) : m_session(session) {}

    static const QString DuplicateMessage;

    /** The lists themselves by name: every one for list 0, else the one numbered list. */
    Rows lists(qint64 list = 0);
    /** The items under parentId (a list's number or a parent item), by name. */
    Rows items(qint64 parentId);
    /** One item, or none when it is not in the table. */
    std::optional<Indicator> item(qint64 itemId);
    /**
     * What the parent selector of list offers: the types for makes, the
     * countries for states; for models the engine makes when engineMake is
     * set, else the makes of the equipment type parentItemId (none without
     * one). Nothing for a list that depends on no other.
     */
    Rows parentChoices(qint64 list, qint64 parentItemId, bool engineMake);

    /**
     * The first check item fails on its way into list, in order: a blank
     * name, a dependent list's missing parent (parentId 0), a name its
     * parent already holds. oldName is the name as last shown, empty when
     * adding.
     */
    std::optional<IndicatorProblem> validate(const Indicator& item, qint64 list,
                                             const QString& oldName);
    /** True when another item under parentId has newName, whatever the case. */
    bool nameDupl(qint64 parentId, const QString& newName, const QString& oldName);

    /** Inserts the item when adding and sets its new itemId, else updates it; name trimmed. */
    bool saveRecord(Indicator& item, bool adding);
    bool deleteRecord(qint64 itemId);
    /** True when items hang under itemId. */
    bool canDeleteParent(qint64 itemId);
    /** The name of the first kind of record that uses the item, or empty text. */
    QString canDeleteIndicator(qint64 itemId);

    /** True when a country is named exactly name, case included. */
    bool chkCountryExist(const QString& name);

private:
    Session& m_session;
};
