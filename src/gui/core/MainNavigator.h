#pragma once

#include <QFrame>
#include <QList>

class QLabel;

/**
 * The main screen's side navigator: eight entries, each a picture
 * (imgQuickMenu_i) over a caption (lblQuickMenu_i). Pointing at a caption
 * highlights it until the pointer is back on the bar or leaves it; a click
 * on either part acts, a click on the picture clearing the highlight first.
 */
class MainNavigator : public QFrame
{
    Q_OBJECT

public:
    static constexpr int EntryCount = 8;
    /** The entries by index: the index of the lblQuickMenu_i pair. */
    enum Entry {
        WorkOrders,
        Equipment,
        Services,
        Suppliers,
        Employees,
        PartInventory,
        Reports,
        Help
    };

    explicit MainNavigator(QWidget* parent = nullptr);

    /** The captions, by index. */
    static QStringList captions();

    void setEntryEnabled(int index, bool enabled);
    bool isEntryEnabled(int index) const;
    /** The index of the highlighted caption, -1 when none is. */
    int highlighted() const { return m_highlighted; }
    void resetHighlight();

signals:
    void entryClicked(int index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void addEntry(int index, const QString& caption);
    void setHighlighted(int index);

    QList<QLabel*> m_images;
    QList<QLabel*> m_captions;
    int m_highlighted = -1;
};
