#pragma once

#include "Indicator.h"
#include "IndicatorManager.h"
#include "RecordScreen.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;

/**
 * The items of the lookup lists: on the left the list being kept (or every
 * list), on the right its items by name, and for a dependent list (makes,
 * models, states) a selector of the parent item the shown items hang under.
 */
class IndicatorScreen : public RecordScreen
{
    Q_OBJECT

public:
    static const QString MissingItemMessage;

    /**
     * list is the list to keep, or 0 for every list. For models, the parent
     * selector offers the engine makes when engineMake is set, else the makes
     * of the equipment type parentItemId.
     */
    IndicatorScreen(Session& session, qint64 list, qint64 parentItemId, bool engineMake,
                    QWidget* parent = nullptr);

    /**
     * Shows the list as a modal window on the item selectedItemId, with its
     * parent chosen for a dependent list (else the parent item parentItemId
     * of a make or state), and answers the item shown when it closed.
     */
    static QVariant showIndicatorDetail(Session& session, int listNumber,
                                        const QVariant& selectedItemId,
                                        const QVariant& parentItemId, bool engineMake,
                                        QWidget* parent = nullptr);

protected:
    Rows loadRecords() override;
    bool validateFields() override;
    bool saveRecord(QVariant* id) override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;
    void enableControls() override;

private:
    void buildLayout(RecordGrid* grid);
    void fillLists(qint64 list);
    void chooseList();
    void chooseParent(qint64 parentItemId);
    void onParentChanged();
    void selectItem(const QVariant& itemId);
    qint64 currentList() const;
    /** The ParentID of the items shown: the chosen parent item, or the list's number. */
    qint64 parentOfItems() const;

    IndicatorManager m_manager;
    Indicator m_item;
    qint64 m_parentItemId;
    bool m_engineMake;
    qint64 m_shownParent = 0; ///< the parent item whose items the list shows
    QListWidget* m_lists = nullptr;
    QLabel* m_parentLabel = nullptr;
    QComboBox* m_parents = nullptr;
    QLineEdit* m_name = nullptr;
};
